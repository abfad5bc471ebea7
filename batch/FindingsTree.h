#pragma once

#include <QLocale>
#include <QSet>
#include <QTreeWidget>

#include "batch/SheetChecks.h"
#include "preflight/CheckSummary.h"
#include "preflight/FindingWords.h"

/// The sheets that were checked with what was found on each: first what is wrong with blanks, once
/// for all their sheets, then the sheets, those with errors before those with warnings alone and
/// those before the rest.
class FindingsTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit FindingsTree(QWidget* parent = nullptr);

    /// Shows what is known of all sheets. The checks must outlive the tree.
    void setChecks(const SheetChecks* checks);

    /// Begins anew, with no sheet.
    void clearSheets();

    /// Adds a sheet whose result is up to date.
    void addSheet(int sheet);

    /// Adds all sheets that have been checked, in place of what is shown.
    void showAll();

    /// Hides the sheets of which nothing is to be said.
    void setOnlyFindings(bool only);

    /// What stands in grey in the middle as long as there is nothing else.
    void setNotice(const QString& notice);

    /// The sheet of the current row; -1 if there is none.
    int currentSheet() const;

    /// Goes to the next (1) or previous (-1) sheet that is shown.
    void step(int direction);

    /// All of the current row's text that is to be read; empty for a sheet.
    QString currentText() const;

    /// Makes the first finding on a frame of the current sheet the current row. False if there is
    /// none.
    bool selectFrame(int frame);

    /// The sheets that are shown, from the top down.
    QVector<int> shownSheets() const;

    int findingCount() const { return m_summary.findings() + m_unreadable; }

    /// How many documents have findings of their own.
    int documentCount() const { return m_documents.size(); }

signals:
    /// Another row is current: a sheet, and the number of the frame with the finding, or 0.
    void chosen(int sheet, int frame);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTreeWidgetItem* addRow(QTreeWidgetItem* parent, int place, const QString& text, int sheet,
                            const Finding* finding);
    QTreeWidgetItem* blankRow(const Finding::Blank& blank, int sheet);
    int placeOf(const SheetChecks::Result& result);
    void addFinding(int sheet, QTreeWidgetItem* row, const Finding& finding);
    void showRow(QTreeWidgetItem* row) const;
    QTreeWidgetItem* sheetRow(int sheet) const;
    void tellCurrent();

    const SheetChecks* m_checks = nullptr;
    FindingWords m_words;
    CheckSummary m_summary;
    QSet<QString> m_documents; // IDs of those with findings of their own
    QString m_notice;
    int m_unreadable = 0;
    int m_blankRows = 0; // at the top
    int m_errorRows = 0; // behind them
    int m_warningRows = 0;
    bool m_onlyFindings = false;
};
