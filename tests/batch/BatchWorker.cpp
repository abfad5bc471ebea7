// Prints all documents of an application directory on the first blank, until it is killed:
// batch_worker DIRECTORY PRINTER, or an empty PRINTER for a file a document.

#include <QApplication>
#include <QSqlQuery>

#include "app/AppHelpers.h"
#include "batch/BatchJournal.h"
#include "batch/PrintRun.h"
#include "store/DataBase.h"
#include "store/OrgData.h"

int main(int argc, char* argv[])
{
    const QApplication app(argc, argv);
    const QString directory = QApplication::arguments().value(1);
    setAppDirPath(directory);
    orgDataPath = directory + "/data/Zelvora/orgData.json";
    PrintPlan plan;
    plan.target.kind = PrintTarget::Kind::FilePerDocument;
    plan.target.place = directory + "/out";
    plan.target.namePattern = "{#ID}";
    if (!QApplication::arguments().value(2).isEmpty()) {
        plan.target.kind = PrintTarget::Kind::Printer;
        plan.target.place = QApplication::arguments().value(2);
    }
    BatchJournal journal;
    if (!dataBase.open() || !journal.open()) {
        return 2;
    }
    QSqlQuery query("SELECT ID FROM docs ORDER BY ID");
    while (query.next()) {
        PlannedSheet sheet;
        sheet.sheet.document.id = query.value(0);
        sheet.sheet.blank.id = 1;
        plan.sheets.append(sheet);
    }
    query.finish();
    PrintRun run(plan, journal);
    QObject::connect(&run, &PrintRun::stateChanged, &app, [&run] {
        if (run.state() == PrintRun::State::Ended) {
            QApplication::quit();
        }
    });
    return run.begin() ? QApplication::exec() : 2;
}
