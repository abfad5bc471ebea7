#include "BatchDesk.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <ctime>

#include "app/AppStyle.h"
#include "batch/DocumentsModel.h"
#include "batch/StepButton.h"

qint64 workedMs()
{
    return static_cast<qint64>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

void BatchDesk::addForm(const QString& name)
{
    exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME) VALUES (?, ?)", {name, name});
}

void BatchDesk::addDocuments(int count)
{
    exec("BEGIN");
    for (int i = 1; i <= count; ++i) {
        addDocument({}, {{"LNAME", QString("Фамилия%1").arg(i, 4, 10, QChar('0'))}});
    }
    exec("COMMIT");
}

void BatchDesk::open()
{
    loadBaseStyle();
    m_window = std::make_unique<BatchWindow>();
    m_window->resize(1366, 700);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void BatchDesk::change(const QString& statement) const
{
    const QString name = "writer";
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase("QSQLITE", name);
        writer.setDatabaseName(path("docs.db"));
        QVERIFY(writer.open());
        QSqlQuery query(writer);
        QVERIFY2(query.exec(statement), qPrintable(statement));
    }
    QSqlDatabase::removeDatabase(name);
}

void BatchDesk::tick(int rows) const
{
    for (int row = 0; row < rows; ++row) {
        const QModelIndex box = documents()->model()->index(row, DocumentsModel::TickColumn);
        documents()->scrollTo(box);
        QTest::mouseClick(documents()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          documents()->visualRect(box).center());
    }
}

QString BatchDesk::cell(int row, int column) const
{
    return documents()->model()->index(row, column).data().toString();
}

QStringList BatchDesk::people() const
{
    QStringList people;
    for (int row = 0; row < documents()->model()->rowCount(); ++row) {
        people << cell(row, DocumentsModel::PersonColumn).section(' ', 0, 0);
    }
    return people;
}

bool BatchDesk::isTicked(int row) const
{
    return documents()->model()->index(row, DocumentsModel::TickColumn).data(Qt::CheckStateRole) ==
           Qt::Checked;
}

QString BatchDesk::status(const QString& button) const
{
    return named<StepButton>(*m_window, button)->status();
}
