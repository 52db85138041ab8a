#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QWidget>

#include <functional>

class QLabel;

/// The common look of the first-party pages: dark text and one accent on white. Texts stand out
/// from white by at least 4.5 : 1, lines, bars and charts by 3 : 1 (WCAG 2.1); a test computes it.
namespace look {

inline constexpr QColor text(0x1f, 0x29, 0x33);
inline constexpr QColor secondaryText(0x5c, 0x69, 0x77);
inline constexpr QColor hairline(0x8a, 0x93, 0x9c);
inline constexpr QColor track(0xe8, 0xed, 0xf2);
inline constexpr QColor accent(0x27, 0x70, 0xae);
inline constexpr QColor secondAccent(0x2a, 0x93, 0x8a);
inline constexpr QColor warning(0xc4, 0x6a, 0x0b);
inline constexpr QColor warningText(0x9a, 0x50, 0x04);

/// Widest a page's column grows, so that lines stay readable in a large window.
inline constexpr int columnWidth = 960;
inline constexpr int pageMargin = 28;
inline constexpr int gap = 16;

/// The application's font, larger or smaller by the factor.
QFont font(double factor = 1.0, QFont::Weight weight = QFont::Normal);

/// Does it when the widget is first shown: what measures text loads the fonts, for which no start
/// should wait.
void whenPolished(QWidget *widget, std::function<void()> doIt);

void setTextColor(QWidget *widget, const QColor &color);
/// Where lines of the window begin, whatever language the text is in: a label goes by its text.
void alignToLayout(QLabel *label);
/// A label of plain text that may take several lines.
QLabel *makeText(const QString &text, const QColor &color);
/// Makes the widget paint a plain white background.
void paintWhite(QWidget *widget);

/// A page that scrolls: fills the view with a white scroll area around one column.
/// @param name of the page, for assistive technology.
/// @return the column, which the caller gives a layout; owned by the view.
QWidget *addScrollingColumn(QWidget *view, const QString &name);

/// The picture in the file, rendered for a square of that many points and for screens of up to
/// three pixels a point. Null when the file is missing or is no SVG.
QImage icon(const QString &svgPath, int points = 16);

} // namespace look
