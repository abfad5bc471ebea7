#pragma once

#include <QDialog>
#include <QStringList>
#include <QVariantList>

#include <memory>

namespace Ui {
class BlankFormatDialog;
}

/// The settings of a blank: every column of its row but the items. A value lives in its widget
/// alone. Sizes and offsets are millimetres, codes those of BlankRecord.h.
class BlankFormatDialog : public QDialog
{
    Q_OBJECT

public:
    explicit BlankFormatDialog(QWidget* parent = nullptr);
    ~BlankFormatDialog() override;

    QString name() const;
    QVariant form() const; ///< ID of the form, invalid if none is chosen
    int paperFormat() const;
    int orientation() const;
    int pages() const;
    QString fontFamily() const;
    int fontSize() const;       ///< points
    QString background() const; ///< path relative to the application directory
    int pageWidth() const;
    int pageHeight() const;
    int offsetX() const;
    int offsetY() const;

    /// Appends forms to choose from, in the order given. Both lists have the same length.
    void setForms(const QStringList& names, const QVariantList& ids);

    /// Also turns the window's title into that of editing.
    void setName(const QString& name);

    /// An unknown form, likewise an unknown paper format, leaves the combo on nothing.
    void setForm(const QVariant& id);
    void setPaperFormat(int code);

    /// A code other than the two known ones changes nothing.
    void setOrientation(int code);
    void setPages(int pages);

    /// A family that is not installed stays as it is by name.
    void setFontFamily(const QString& family);
    void setFontSize(int points);
    void setBackground(const QString& path);
    void setPageSize(int width, int height);
    void setOffsets(int x, int y);

public slots:
    void on_buttonSelectBGImg_clicked();

private:
    std::unique_ptr<Ui::BlankFormatDialog> ui;
};
