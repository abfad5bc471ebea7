#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class ChangeOrgDataDlg;
}

/// Lets the user change the organisation's data. Shows what the file holds; without a file, what
/// the globals hold.
class ChangeOrgDataDlg : public QDialog
{
    Q_OBJECT

public:
    explicit ChangeOrgDataDlg(QWidget* parent = nullptr);
    ~ChangeOrgDataDlg() override;

    /// Writes the five globals to the file at `orgDataPath` and makes its folder if need be. A file
    /// that can't be written is passed over in silence; the globals hold all the same.
    void saveOrgData();

private:
    void showOrgData();
    void onSave();

    std::unique_ptr<Ui::ChangeOrgDataDlg> ui;
};
