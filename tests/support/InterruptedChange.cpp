#include "support/InterruptedChange.h"

#include "support/Process.h"

QByteArray makeInterruptedChange(const QString& database, const QString& copy)
{
    // With so small a cache the change is written to the file before it is committed.
    return runPython(R"(
import shutil, sqlite3, sys
database, copy = sys.argv[1:]
change = sqlite3.connect(database, isolation_level=None)
change.execute('PRAGMA cache_size = 1')
change.execute('BEGIN IMMEDIATE')
change.execute('DELETE FROM docs')
change.execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
               "INSERT INTO docs (LNAME, CONTENT) SELECT 'half', hex(randomblob(300)) FROM n")
shutil.copy(database, copy)
shutil.copy(database + '-journal', copy + '-journal')
change.execute('ROLLBACK')
)",
                     {database, copy})
        .err;
}
