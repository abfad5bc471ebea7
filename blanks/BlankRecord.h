#pragma once

#include <QString>
#include <QVariant>

/// Codes of the column `PAPER_FORMAT`.
namespace PaperFormat {
constexpr int a4 = 0;
constexpr int a5 = 1;
constexpr int customMm = 42;
} // namespace PaperFormat

/// Codes of the column `PAPER_ORIENTATION`.
// kept: the reverse of the printer library's enumeration; stored blanks hold them.
namespace PaperOrientation {
constexpr int landscape = 0;
constexpr int portrait = 1;
} // namespace PaperOrientation

/// Kinds of a blank's items: the key `type` of an item object. These are not the field types.
namespace BlankItemKind {
constexpr int text = 0;
constexpr int qr = 1;
constexpr int table = 2;
} // namespace BlankItemKind

/// Codes of the key `h_align`; in the preview any other value means centre.
namespace HorizontalAlign {
constexpr int left = 0;
constexpr int right = 1;
constexpr int center = 2;
} // namespace HorizontalAlign

/// Codes of the key `v_align`; in the preview any other value means centre.
namespace VerticalAlign {
constexpr int top = 0;
constexpr int bottom = 1;
constexpr int center = 2;
} // namespace VerticalAlign

/// Converts millimetres to scene units: times 3.7795, truncated toward zero. The only conversion
/// of the system; page sizes and print offsets all pass through it.
int mmToPixels(int millimetres);

/// Cuts a length in scene units to a whole number, toward zero; beyond the range of int it is the
/// nearest end of it, and the lowest for what is no number.
int truncated(double length);

/// The name of a paper format code: "A4", "A5", "CustomMM", or "Unknown" for any other code.
QString paperFormatName(int code);

/// What the user sees of a blank's name: the name, or "Бланк " and the `ID` where it is empty.
QString shownBlankName(const QString& name, const QVariant& id);
