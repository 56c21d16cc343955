#include "desktop/readable_style.hpp"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

namespace telvox::desktop {

namespace {

/// Relative luminance of sRGB, 0 to 1.
double luminance(const QColor &color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The faintest mixture of two colours that stands out from the ground this much; the colour itself if even
/// that does not.
QColor faint(const QColor &color, const QColor &ground, double enough) {
    constexpr int steps = 20;
    for (int step = 1; step < steps; ++step) {
        const auto mix = [&](int from, int to) { return from + (to - from) * step / steps; };
        const QColor mixed(mix(ground.red(), color.red()), mix(ground.green(), color.green()),
                           mix(ground.blue(), color.blue()));
        if (contrast(mixed, ground) >= enough)
            return mixed;
    }
    return color;
}

/// Whether the palette of the platform is a dark one.
bool is_dark() {
    const QPalette palette = QGuiApplication::palette();
    return luminance(palette.color(QPalette::Window)) < luminance(palette.color(QPalette::WindowText));
}

/// Changes what lies beneath the style when the colours change between light and dark.
class ColourWatch final : public QObject {
  public:
    explicit ColourWatch(QObject *parent) : QObject(parent) { choose(); }
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::ApplicationPaletteChange && is_dark() != dark_)
            choose();
        return false;
    }

  private:
    void choose() {
        dark_ = is_dark();
        const bool own = dark_ && QGuiApplication::platformName() == "windows";
        QApplication::setStyle(own ? new ReadableStyle("fusion") : new ReadableStyle);
        // The platform's dark palette for these fills them whether they are ticked or not.
        if (QGuiApplication::platformName() == "windows")
            for (const char *kind : {"QCheckBox", "QRadioButton"})
                QApplication::setPalette(QGuiApplication::palette(), kind);
    }
    bool dark_ = false;
};

/// Whichever of the two stands out more.
QColor clearer(const QColor &deep, const QColor &bright, const QColor &ground) {
    return contrast(deep, ground) > contrast(bright, ground) ? deep : bright;
}

} // namespace

double contrast(const QColor &a, const QColor &b) {
    const double one = luminance(a), other = luminance(b);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor red_on(const QColor &ground) { return clearer({0xB0, 0x00, 0x00}, {0xFF, 0x8A, 0x80}, ground); }
QColor green_on(const QColor &ground) { return clearer({0x00, 0x66, 0x00}, {0x8A, 0xE0, 0x8A}, ground); }

void ReadableStyle::polish(QPalette &palette) {
    QProxyStyle::polish(palette);
    struct Pair {
        QPalette::ColorRole text, ground;
        double enough;
    };
    // More than 3 and 4.5: smooth edges of letters are fainter than their colour.
    constexpr Pair pairs[] = {{QPalette::Text, QPalette::Base, 6.0},
                              {QPalette::WindowText, QPalette::Window, 4.5},
                              {QPalette::ButtonText, QPalette::Button, 4.5}};
    for (const Pair &pair : pairs)
        palette.setColor(QPalette::Disabled, pair.text,
                         faint(palette.color(QPalette::Active, pair.text),
                               palette.color(QPalette::Disabled, pair.ground), pair.enough));
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const {
    if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        frame && element == PE_PanelLineEdit && option->state.testFlag(State_ReadOnly)) {
        QStyleOptionFrame same_as_ground(*frame);
        same_as_ground.palette.setBrush(QPalette::Base, option->palette.window());
        return QProxyStyle::drawPrimitive(element, &same_as_ground, painter, widget);
    }
    if (const auto *frame = qstyleoption_cast<const QStyleOptionFocusRect *>(option);
        frame && element == PE_FrameFocusRect) {
        QStyleOptionFocusRect always(*frame); // many styles leave it out until the Tab key is pressed
        always.state |= State_KeyboardFocusChange;
        return QProxyStyle::drawPrimitive(element, &always, painter, widget);
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const QColor ground = option->palette.color(QPalette::Window);
    const QColor text = option->palette.color(QPalette::WindowText);
    const bool round = element == PE_IndicatorRadioButton;
    if ((!round && element != PE_IndicatorCheckBox) || luminance(ground) > luminance(text))
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(faint(text, ground, 4.5));
    painter->setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    round ? painter->drawEllipse(outline) : painter->drawRect(outline);
    painter->restore();
}

void follow_system_colours(QApplication &application) {
    application.installEventFilter(new ColourWatch(&application));
}

QSize ReadableStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                      const QWidget *widget) const {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (type != CT_PushButton || !button)
        return size;
    constexpr int distance = 10; // of the text from the border, left and right
    return size.expandedTo({button->fontMetrics.horizontalAdvance(button->text) + 2 * distance, 0});
}

} // namespace telvox::desktop
