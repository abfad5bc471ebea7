#pragma once

#include <QString>

/// Form in which the columns of `docs` and the values of date fields hold a date.
extern const QString storedDateFormat;
