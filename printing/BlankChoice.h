#pragma once

#include <QString>
#include <QVariant>

#include "render/page/BlankList.h"

/// The blank that a document is to be printed on.
struct BlankChoice
{
    /// Why there is none.
    enum class Problem
    {
        None,
        NoBlanks,   ///< the document's form has no blanks
        NoSuchBlank ///< it has none of the wanted ID or name
    };

    QVariant id; ///< null if there is none
    Problem problem = Problem::None;
};

/// Chooses among the blanks of a document's form: the one with the ID or else the name `wanted`,
/// or the first one if nothing is wanted.
BlankChoice chooseBlank(const BlankList& blanks, const QString& wanted);
