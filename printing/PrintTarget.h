#pragma once

#include <QString>
#include <QStringList>

class QPrinter;

/// Where the sheets of a batch go.
struct PrintTarget
{
    enum class Kind
    {
        OneFile,         ///< one PDF file with all
        FilePerDocument, ///< a PDF file a sheet, in a folder
        Printer
    };

    Kind kind = Kind::OneFile;
    QString place;               ///< path of the file or folder, or name of the printer
    QString namePattern;         ///< of the files in a folder, as of FileNamePattern
    QStringList namesInUse = {}; ///< in the folder, that no further sheet is to get
    QPrinter* printer = nullptr; ///< as the user has set it up; null: the printer named `place`
};
