#pragma once

#include <QString>

/// Full official name of the organisation, accusative case.
extern QString orgNameFormat1;
/// Full official name of the organisation, prepositional case.
extern QString orgNameFormat2;
/// Region of the organisation.
extern QString orgRegion;
/// Locality of the organisation.
extern QString orgLocality;
/// Head of the organisation: surname, given name and patronymic in full.
extern QString orgDirector;

/// Full path of "orgData.json" in the user's data location, fixed before main() starts.
extern QString orgDataPath;

/// True if there is no file at `orgDataPath`, or one that holds a JSON object.
bool isOrgDataSound();

/// Reads the five strings from the file at `orgDataPath`. Returns true if the file exists, whether
/// or not it could be opened. A missing file leaves the strings alone; a key that is missing or no
/// string, and a file that is no JSON, give empty strings.
bool loadOrgData();
