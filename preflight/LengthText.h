#pragma once

#include <QLocale>
#include <QString>

/// A number of millimetres with so many decimals, as the locale writes numbers: with its decimal
/// mark, and in groups of digits unless its options leave them out.
QString lengthText(double millimetres, int decimals, const QLocale& locale);
