#include <QApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <functional>

#include "WorkedDocument.h"
#include "app/AppHelpers.h"
#include "documents/DocDialog.h"
#include "documents/DocumentFixture.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/ZelvoraTextButton.h"
#include "store/DataBase.h"

// Stores and changes documents and saves archives through the main window and its dialogs, in an
// order that follows from the seed, and says what it was told is done: a process that can be killed
// at any moment. The directory's database has one form, with a number #NO and a text #TEXT.
//
//     desk_worker DIRECTORY SEED OPERATIONS
//
//     begin                  the window stands
//     trying ID NUMBER       document ID is about to get the content of NUMBER
//     stored ID NUMBER       it has it
//     archived FILE SHA1     an archive was saved; SHA1 is that of the database right before
//     end                    all is done

namespace {

void say(const QString& line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

// Whatever the application logs here tells of a failure.
void stopAtFailure(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg) {
        say("failed " + text);
        std::exit(EXIT_FAILURE);
    }
}

void fill(QDialog* dialog, const WorkedDocument& document)
{
    named<QLineEdit>(dialog, "lnameEdit")->setText(document.lname());
    named<QLineEdit>(dialog, "seriesEdit")->setText(document.series());
    named<QLineEdit>(dialog, "numberEdit")->setText(document.blankNo());
    editorOfTag<QSpinBox>(dialog, "#NO")->setValue(document.number);
    editorOfTag<ZelvoraTextButton>(dialog, "#TEXT")->setValue(document.text());
    named<QPushButton>(dialog, "saveButton")->click();
}

// Plays the user of the next dialog once its loop runs.
template <class Dialog>
void inDialog(const std::function<void(Dialog*)>& step)
{
    QTimer::singleShot(0, qApp, [step] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            say("failed another dialog came");
            std::exit(EXIT_FAILURE);
        }
        step(dialog);
    });
}

QByteArray hashOf(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        return QByteArray();
    }
    return hash.result().toHex();
}

class Worker
{
public:
    explicit Worker(int seed)
        : m_random(static_cast<quint32>(seed))
        , m_list(named<QTableWidget>(&m_window, "docsWidget"))
    {
    }

    void run(int operations)
    {
        m_window.show();
        say("begin");
        for (int i = 0; i < operations; ++i) {
            work();
        }
        say("end");
    }

private:
    void work()
    {
        const int choice = m_random.bounded(10);
        if (m_list->rowCount() == 0 || choice < 4) {
            create();
        } else if (choice < 8) {
            change();
        } else {
            archive();
        }
    }

    void create()
    {
        const WorkedDocument document{++m_lastNumber};
        const int rows = m_list->rowCount();
        inDialog<NewDocDlg>([&](NewDocDlg* dialog) {
            named<QComboBox>(dialog, "docTypeCmb")->setCurrentIndex(0);
            fill(dialog, document);
        });
        m_window.onNewDoc();
        if (m_list->rowCount() == rows + 1) {
            sayOf("stored", document);
        }
    }

    void change()
    {
        m_list->setCurrentCell(m_random.bounded(m_list->rowCount()), 0);
        const WorkedDocument document{++m_lastNumber};
        sayOf("trying", document);
        inDialog<DocDialog>([&](DocDialog* dialog) { fill(dialog, document); });
        m_window.onEditDoc();
        sayOf("stored", document);
    }

    void archive()
    {
        const QString target = appFilePath(QString("storage/%1.zlv").arg(++m_archives));
        const QByteArray database = hashOf(appFilePath("docs.db"));
        inDialog<QFileDialog>([&](QFileDialog* dialog) {
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(target);
            static_cast<QDialog*>(dialog)->accept();
        });
        m_window.saveData();
        say("archived " + target + " " + database);
    }

    void sayOf(const char* what, const WorkedDocument& document) const
    {
        say(QString("%1 %2 %3").arg(what, m_window.currentDocId().toString()).arg(document.number));
    }

    QRandomGenerator m_random;
    MainWindow m_window;
    QTableWidget* m_list;
    int m_lastNumber = 0;
    int m_archives = 0;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        return EXIT_FAILURE;
    }
    setAppDirPath(arguments.at(1));
    if (!dataBase.open()) {
        return EXIT_FAILURE;
    }
    qInstallMessageHandler(stopAtFailure);
    Worker(arguments.at(2).toInt()).run(arguments.at(3).toInt());
    return EXIT_SUCCESS;
}
