#include "store/StoredDate.h"

const QString storedDateFormat = QStringLiteral("yyyy-MM-dd");
