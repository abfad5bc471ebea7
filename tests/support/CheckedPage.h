#pragma once

#include <QVector>

#include "preflight/PageCheck.h"
#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"

/// A document on a blank that was checked and can be printed.
class CheckedPage : public PrintFixture
{
public:
    /// Makes a document and a blank, checks them and returns the findings. Arguments as for
    /// addBlank() and addDocument().
    QVector<Finding> check(const QJsonArray& items, const QVariantMap& blank = {},
                           const QJsonObject& content = {}, const QVariantMap& document = {});

    /// The page that was checked last, as it is on paper. The file is replaced by the next one.
    PdfMeasure print();

    PageCheck pageCheck;

private:
    QVariant m_document;
    QVariant m_blank;
};
