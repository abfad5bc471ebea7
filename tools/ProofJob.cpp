#include "tools/ProofJob.h"

#include <QDir>
#include <QFileInfo>

#include "app/TargetFile.h"
#include "preflight/PageCheck.h"
#include "preflight/ProofPicture.h"
#include "printing/BatchCheck.h"
#include "tools/Interruption.h"

ProofJob::ProofJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : DocumentJob(options, out, err)
    , m_names(options.namePattern(), ".png")
{
}

JobResult ProofJob::run()
{
    if (!selectDocuments() || !prepareTarget()) {
        return JobResult::NotDone;
    }
    BatchCheck check(m_sheets, *this);
    if (!prepare(check.pageCheck())) {
        return JobResult::NotDone;
    }
    const bool isWhole = check.run();
    m_progress.clear();
    if (!isWhole && !isReaderGone()) {
        report(tr("interrupted"));
    }
    if (m_written == 0) {
        return JobResult::NotDone;
    }
    return isWhole && m_isClean && allKnown() ? JobResult::Done : JobResult::SomeFailed;
}

void ProofJob::sheetChecked(int sheet, PageCheck& check)
{
    const bool isWritten = write(sheet, check);
    m_written += isWritten ? 1 : 0;
    m_isClean = m_isClean && isWritten && check.findings().isEmpty();
}

void ProofJob::sheetNotChecked(int sheet, const SheetOutcome& outcome)
{
    m_isClean = false;
    report(sheet, outcome);
}

bool ProofJob::prepareTarget()
{
    if (m_options.target() == PrintOptions::Target::OneFile) {
        removeLeftovers(QFileInfo(m_options.output()).path());
        if (m_sheets.size() > 1) {
            report(tr("there are several documents: the pictures need a folder"));
            return false;
        }
        const bool isUsable = TargetFile::isAllowed(m_options.output()) &&
                              canWriteInto(QFileInfo(m_options.output()).path());
        if (!isUsable) {
            reportUnwritable(m_options.output());
        }
        return isUsable;
    }
    removeLeftovers(m_options.output());
    return makeFolder();
}

std::optional<QString> ProofJob::pathFor(int sheet)
{
    if (m_options.target() == PrintOptions::Target::OneFile) {
        return m_options.output();
    }
    const std::optional<QString> name = m_names.nameFor(m_sheets[sheet].document);
    return name ? std::optional<QString>(QDir(m_options.output()).filePath(*name)) : std::nullopt;
}

bool ProofJob::write(int sheet, PageCheck& check)
{
    const std::optional<QString> target = pathFor(sheet);
    if (!target) {
        report(sheet, SheetOutcome::failed(SheetOutcome::Reason::Unreadable));
        return false;
    }
    const QString& path = *target;
    const QImage picture =
        ProofPicture(check, m_options.resolution(), m_options.withBackground()).draw();
    if (picture.isNull()) {
        report((check.sheetSize().isEmpty() ? tr("the page has no size, there is no picture %1")
                                            : tr("no memory for the picture %1"))
                   .arg(path));
        return false;
    }
    const bool isOneFile = m_options.target() == PrintOptions::Target::OneFile;
    TargetFile file(path, isOneFile ? TargetFile::Links::Follow : TargetFile::Links::Replace);
    if (!file.open() || !picture.save(&file.device(), "PNG") || !file.commit()) {
        reportUnwritable(path);
        return false;
    }
    tellFile(path);
    return true;
}
