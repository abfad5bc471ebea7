#pragma once

#include <QJsonObject>
#include <QString>

class QDate;
class QSqlQuery;
class QVariant;

/// The date in words: day without a leading zero, month in the genitive, year. An invalid date
/// reads as zeros, "0  0".
QString dateToWords(const QDate& date);

/// Surname and initials of a name written surname first, with a blank at the end: "Иванов И. И. ".
/// Parts beyond the third are ignored.
QString shortPersonName(const QString& fullName);

/// Position behind the tag whose "#" stands at `tagBegin`: the longest run of tag characters.
int tagEnd(const QString& text, int tagBegin);

/// True for the tags of the document's dates, which print in words.
bool isDateTag(const QString& tag);

/// Replaces a whole tag ("#" included) by its value for a document; true if it was replaced. An
/// unknown tag and the tag of a table field stay as they are.
bool expandTag(QString& tag, const QJsonObject& docValues, const QJsonObject& docContent);

/// The finished text: every tag replaced by its value, then "^" removed and a backslash with an
/// "n" turned into a line feed, in inserted values too. A tail of exactly one character behind the
/// last tag is dropped.
QString expandTags(const QString& text, const QJsonObject& docValues,
                   const QJsonObject& docContent);

/// expandTags() for a stored document. If the document cannot be read, the text comes back
/// unchanged and the driver's text goes into `error` (may be null).
QString expandTagsForDoc(const QString& text, const QVariant& docId, QString* error);

/// Every column of the current row of `docs` but `CONTENT`, as text, by tag ("#" and its name).
QJsonObject documentTagValues(const QSqlQuery& row);

/// The fields of the form in the current row of `docs`, by tag; empty if `CONTENT` is no object.
QJsonObject documentTagContent(const QSqlQuery& row);

/// The same for the value of `CONTENT`.
QJsonObject documentTagContent(const QVariant& content);

/// The tag of a column of `docs`; empty for `CONTENT`, which has none.
QString documentColumnTag(const QString& column);
