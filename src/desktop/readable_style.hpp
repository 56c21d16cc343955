#pragma once

#include <QApplication>
#include <QProxyStyle>

namespace telvox::desktop {

/// How well one colour stands out from another, 1 (not at all) to 21 (black on white).
[[nodiscard]] double contrast(const QColor &a, const QColor &b);

/// A red, and a green, that can be read on this ground.
[[nodiscard]] QColor red_on(const QColor &ground);
[[nodiscard]] QColor green_on(const QColor &ground);

/// The platform's style, readable in light and dark palettes: locked fields still show what is being written
/// to the device, unticked boxes and circles can be seen on dark ground, a field that nobody can type into
/// looks like the ground it stands on, what has the focus shows it however it got it, and buttons leave their
/// text room.
class ReadableStyle final : public QProxyStyle {
  public:
    using QProxyStyle::polish;
    using QProxyStyle::QProxyStyle;
    void polish(QPalette &palette) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
};

/// Gives the program this style, and Windows in dark colours Qt's own beneath it: that of the system has no
/// dark one. Follows when the user changes the colours.
void follow_system_colours(QApplication &application);

} // namespace telvox::desktop
