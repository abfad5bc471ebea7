#include "batch/RunWords.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include "batch/SheetText.h"

using State = SheetOutcome::State;
using Reason = SheetOutcome::Reason;

namespace {

/// In a sentence, which breaks its lines between words alone, a text of others is of bounded
/// length.
QString shortened(const QString& text)
{
    constexpr int most = 60; // characters
    constexpr int end = 20;
    return text.size() <= most ? text : text.left(most - end) + QChar(0x2026) + text.right(end);
}

QString currentPerson(const PrintRun& run)
{
    return run.current() >= 0 ? shortened(personOf(run.sheets()[run.current()])) : QString();
}

/// With a capital letter at the beginning.
QString asSentence(const QString& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

QString reasonOf(const SheetOutcome& outcome)
{
    switch (outcome.reason) {
    case Reason::NoBlanks:
    case Reason::NoSuchBlank:
        return "нет бланка";
    case Reason::Unreadable:
        return "документ или бланк не прочитан";
    case Reason::FileRefused:
        return "файл не записан";
    case Reason::PrinterRefused:
        return "принтер не принял лист";
    case Reason::PrinterGone:
        return "принтер пропал, посмотрите, вышел ли лист";
    case Reason::Findings:
        return "есть ошибки";
    case Reason::None:
        break;
    }
    return QString();
}

QString rest()
{
    return " Когда всё будет готово, нажмите «Допечатать остальные».";
}

/// Of the common file of a run that did not come to its end.
QString discarded(const PrintTarget& target)
{
    return target.kind == PrintTarget::Kind::OneFile ? " Неполный файл не сохраняется." : QString();
}

QString endingOfFile(const PrintTarget& target)
{
    return QString(
               "Не удалось записать %1: посмотрите, есть ли место на диске и можно ли в эту папку "
               "писать. Неполный файл не сохраняется.")
        .arg(inWords(target));
}

QString endingOfPrinter(const PrintRun& run, const PrintTarget& target)
{
    const bool isGone = run.ending() == PrintRun::Ending::PrinterGone;
    const QString sheet = currentPerson(run);
    const QString text =
        isGone ? QString("Пропал %1: системе он больше не виден. Посмотрите, вышел ли лист «%2».")
               : QString("Не принял лист «%2» %1.");
    return text.arg(inWords(target), sheet) + rest();
}

} // namespace

QString personOf(const PlannedSheet& sheet)
{
    const QString name = personOf(sheet.sheet.document);
    return name.isEmpty() ? "Документ " + sheet.sheet.document.id.toString() : name;
}

QString paperOf(const PlannedSheet& sheet)
{
    QString series = sheet.blankSeries.simplified();
    const QString number = sheet.blankNumber.simplified();
    if (number.isEmpty()) {
        return series;
    }
    return (series + " № " + number).trimmed();
}

QString inWords(const SheetOutcome& outcome)
{
    switch (outcome.state) {
    case State::Printed:
        return outcome.spoilt > 0 ? QString("напечатан, испорчено до этого: %1").arg(outcome.spoilt)
                                  : QString("напечатан");
    case State::HeldBack:
        return "отложен: " + reasonOf(outcome);
    case State::Skipped:
        return "пропущен";
    case State::Failed:
        return "не удалось: " + reasonOf(outcome);
    case State::NotPrinted:
        break;
    }
    return outcome.spoilt > 0 ? "испорчен" : QString();
}

QString totals(const QVector<SheetOutcome>& outcomes)
{
    int printed = 0;
    int heldBack = 0;
    int skipped = 0;
    int failed = 0;
    int spoilt = 0;
    int waiting = 0;
    for (const SheetOutcome& outcome : outcomes) {
        switch (outcome.state) {
        case State::Printed:
            ++printed;
            break;
        case State::HeldBack:
            ++heldBack;
            break;
        case State::Skipped:
            ++skipped;
            break;
        case State::Failed:
            ++failed;
            break;
        case State::NotPrinted:
            ++(outcome.spoilt > 0 ? spoilt : waiting);
            break;
        }
    }
    QStringList parts = {QString("Напечатано %1").arg(printed)};
    const auto add = [&parts](const char* word, int count) {
        if (count > 0) {
            parts << QString("%1 %2").arg(word).arg(count);
        }
    };
    add("отложено", heldBack);
    add("пропущено", skipped);
    add("испорчено", spoilt);
    add("не удалось", failed);
    add("не напечатано", waiting);
    return parts.join(", ");
}

QString inWords(const PrintTarget& target)
{
    switch (target.kind) {
    case PrintTarget::Kind::OneFile:
        return QString("файл «%1»").arg(shortened(QFileInfo(target.place).fileName()));
    case PrintTarget::Kind::FilePerDocument:
        return QString("папка «%1»").arg(shortened(QDir::toNativeSeparators(target.place)));
    case PrintTarget::Kind::Printer:
        break;
    }
    return QString("принтер «%1»").arg(shortened(target.place));
}

QString inWords(const PrintRun& run, const PrintTarget& target)
{
    const QString sheet = currentPerson(run);
    const QString count = QString("%1 из %2").arg(run.dealt()).arg(run.sheets().size());
    QString place = asSentence(inWords(target));
    switch (run.state()) {
    case PrintRun::State::Printing:
        return QString("%1: готово %2, печатается %3").arg(place, count, sheet);
    case PrintRun::State::AwaitsSheet:
    case PrintRun::State::AwaitsPaper:
        return QString("%1: готово %2, ждёт бумагу").arg(place, count);
    case PrintRun::State::AwaitsData:
        return "База данных занята другой программой, печать ждёт";
    case PrintRun::State::AwaitsEnd:
    case PrintRun::State::Ended:
        break;
    }
    return place;
}

QString refusalOf(const PrintTarget& target)
{
    switch (target.kind) {
    case PrintTarget::Kind::OneFile:
        return QString("Не удалось создать %1: посмотрите, есть ли такая папка и можно ли в неё "
                       "писать. Ничего не напечатано.")
            .arg(inWords(target));
    case PrintTarget::Kind::FilePerDocument:
        return QString("Не удалось создать папку «%1». Ничего не напечатано.")
            .arg(QDir::toNativeSeparators(target.place));
    case PrintTarget::Kind::Printer:
        break;
    }
    return QString("Системе не виден %1. Ничего не напечатано.").arg(inWords(target));
}

JournalEntry entryOf(const PlannedSheet& sheet, const QString& file, const PrintTarget& target,
                     const QString& event)
{
    JournalEntry entry;
    entry.time = QDateTime::currentDateTime();
    entry.document = sheet.sheet.document.id.toString();
    entry.person = personOf(sheet);
    entry.form = sheet.form;
    entry.blank = sheet.blankName;
    entry.paper = paperOf(sheet);
    entry.place = file.isEmpty() ? target.place : file;
    entry.event = event;
    return entry;
}

QString endingOf(const PrintRun& run, const PrintTarget& target)
{
    switch (run.ending()) {
    case PrintRun::Ending::Whole:
        return "Печать закончена.";
    case PrintRun::Ending::Stopped:
        return "Печать остановлена." + discarded(target);
    case PrintRun::Ending::FileFull:
    case PrintRun::Ending::FileRefused:
        return endingOfFile(target);
    case PrintRun::Ending::PrinterRefused:
    case PrintRun::Ending::PrinterGone:
        return endingOfPrinter(run, target);
    case PrintRun::Ending::JournalRefused:
        return QString("Печать остановлена: не записывается журнал печати (%1).")
                   .arg(shortened(run.problem())) +
               discarded(target) + rest();
    case PrintRun::Ending::DatabaseBusy:
        return "Печать остановлена: базу данных долго держит другая программа." +
               discarded(target) + rest();
    case PrintRun::Ending::DatabaseReplaced:
        return "Печать остановлена: файл базы данных заменили другим или убрали. Обновите список "
               "документов (F5) и посмотрите, те ли в нём документы." +
               discarded(target);
    case PrintRun::Ending::DatabaseUnreadable:
        return "Печать остановлена: база данных не читается." + discarded(target) + rest();
    case PrintRun::Ending::NotChecked:
        break;
    }
    return "Печать остановлена: база данных изменилась, а изменения не проверены." +
           discarded(target) + rest();
}
