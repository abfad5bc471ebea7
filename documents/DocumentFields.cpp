#include "documents/DocumentFields.h"

const QString storedDateFormat = QStringLiteral("yyyy-MM-dd");
