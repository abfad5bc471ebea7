#include "store/ChangeOrgDataDlg.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "app/AppStyle.h"
#include "app/WholeFile.h"
#include "app/widgets/LineStart.h"
#include "store/OrgData.h"
#include "ui_ChangeOrgDataDlg.h"

ChangeOrgDataDlg::ChangeOrgDataDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::ChangeOrgDataDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LineStart::installAll(this);
    loadOrgData();
    showOrgData();
    // After the form's own connection of the button to accept().
    connect(ui->saveButton, &QPushButton::clicked, this, &ChangeOrgDataDlg::onSave);
}

ChangeOrgDataDlg::~ChangeOrgDataDlg() = default;

void ChangeOrgDataDlg::saveOrgData()
{
    // kept: what else the file held is dropped.
    const QJsonObject object = {{"nameFormat1", orgNameFormat1},
                                {"nameFormat2", orgNameFormat2},
                                {"region", orgRegion},
                                {"locality", orgLocality},
                                {"director", orgDirector}};
    QDir().mkpath(QFileInfo(orgDataPath).absolutePath());
    // kept: silent. The strings of the run have the new values even if the file has not.
    writeWholeFile(orgDataPath, QJsonDocument(object).toJson());
}

void ChangeOrgDataDlg::showOrgData()
{
    ui->textEditOrgName1->setPlainText(orgNameFormat1);
    ui->textEditOrgName2->setPlainText(orgNameFormat2);
    ui->lineEditOrgRegion->setText(orgRegion);
    ui->lineEditOrgLocality->setText(orgLocality);
    ui->lineEditOrgDirector->setText(orgDirector);
}

void ChangeOrgDataDlg::onSave()
{
    orgNameFormat1 = ui->textEditOrgName1->toPlainText().simplified();
    orgNameFormat2 = ui->textEditOrgName2->toPlainText().simplified();
    orgRegion = ui->lineEditOrgRegion->text();
    orgLocality = ui->lineEditOrgLocality->text();
    orgDirector = ui->lineEditOrgDirector->text();
    saveOrgData();
}
