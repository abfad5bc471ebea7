#include "forms/FormEditDlg.h"

#include "app/AppStyle.h"
#include "app/widgets/LineStart.h"
#include "ui_FormEditDlg.h"

FormEditDlg::FormEditDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::FormEditDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LineStart::installAll(this);
    connect(this, &QDialog::accepted, this, &FormEditDlg::onDone);
}

FormEditDlg::~FormEditDlg() = default;

void FormEditDlg::setFormName(const QString& name)
{
    m_formName = name;
    ui->typeEdit->setText(name);
}

void FormEditDlg::setFullName(const QString& name)
{
    m_fullName = name;
    ui->nameEdit->setText(name);
}

void FormEditDlg::onDone()
{
    m_formName = ui->typeEdit->text();
    m_fullName = ui->nameEdit->text();
}
