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

/// What stands at `orgDataPath`.
enum class OrgDataFile
{
    Missing,
    Broken, ///< it cannot be read, or holds no JSON object
    Sound
};

/// Reads the five strings from the file at `orgDataPath`. A missing file, and one that cannot be
/// opened or read to its end, leave the strings alone; a key that is missing or no string, and a
/// file that is no JSON, give empty strings.
OrgDataFile readOrgData();

/// The same; true if the file exists, whatever came of it.
bool loadOrgData();
