#include "app/VLRColors.h"
#include "widgets/StatusItemImageView.h"
#include "widgets/VLRAvatarListView.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRLevelView.h"
#include "widgets/VLRView.h"
#include "widgets/WidgetTesting.h"

#include <QDir>
#include <QPainter>

#include <gmock/gmock.h>

// Pictures of the kit's views in their states, for a person to look at:
// written under the build's screenshots folder.

namespace {

constexpr qreal kScale = 2;

class Sheet
{
public:
    Sheet(int width, int height, const QColor& ground)
        : m_image(QSize(width, height) * kScale, QImage::Format_ARGB32)
    {
        m_image.setDevicePixelRatio(kScale);
        m_image.fill(ground);
        m_painter.begin(&m_image);
    }

    // A caption in grey, or a heading.
    void write(int x, int y, const QString& text, bool heading = false, const QColor& color = VLRColors::grey(151))
    {
        m_painter.setFont(heading ? VLRFonts::muli(13, QFont::Bold) : VLRFonts::muli(11));
        m_painter.setPen(heading ? VLRColors::textColor() : color);
        m_painter.drawText(QPointF(x, y), text);
    }

    void fill(const QRect& rect, const QColor& color) { m_painter.fillRect(rect, color); }

    // The view inset from x, over a ground 120 wide, with its caption under it.
    void cell(QWidget* view, int x, int y, const QString& caption, const QColor& ground = Qt::transparent,
              int inset = 0, const QColor& ink = VLRColors::grey(151))
    {
        fill(QRect(x, y, 120, view->height()), ground);
        view->render(&m_painter, QPoint(x + inset, y), QRegion(), QWidget::DrawChildren);
        write(x, y + view->height() + 16, caption, false, ink);
    }

    void save(const QString& name)
    {
        m_painter.end();
        ASSERT_TRUE(QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR)));
        EXPECT_TRUE(m_image.save(QStringLiteral(VELURIA_SCREENSHOT_DIR "/") + name)) << name.toStdString();
    }

private:
    QImage m_image;
    QPainter m_painter;
};

QPixmap asset(const QString& name)
{
    return VLRImageCatalogue::imageNamed(name, QSize(), kScale);
}

// A tab of the popover's bar: pictures for rest, pointer and press.
VLRButton* tabButton(const QString& tab, QWidget* parent = nullptr, int x = 0)
{
    auto* button = new VLRButton(QRect(x, 0, 56, 44), parent);
    button->setDefaultImage(asset(QStringLiteral("tabBar%1Unselected").arg(tab)));
    button->setMouseOverImage(asset(QStringLiteral("tabBar%1MouseOver").arg(tab)));
    button->setClickedImage(asset(QStringLiteral("tabBar%1Selected").arg(tab)));
    return button;
}

// Members with their initials on a colour of their own.
QList<VLRAvatar> members(int count)
{
    const QStringList names = {"Ada Lovelace", "Grace Hopper", "Alan Turing", "Edsger Dijkstra", "Barbara Liskov"};
    const QColor colours[] = {QColor(242, 103, 35), QColor(88, 88, 91), QColor(231, 129, 105), QColor(151, 151, 151)};
    QList<VLRAvatar> avatars;
    for (int i = 0; i < count; ++i) {
        const QString name = names[i % names.size()];
        QPixmap picture(QSize(48, 48));
        picture.fill(colours[i % 4]);
        QPainter painter(&picture);
        painter.setPen(Qt::white);
        painter.setFont(VLRFonts::muli(20, QFont::Bold));
        painter.drawText(picture.rect(), Qt::AlignCenter, name.left(1) + name.section(' ', 1).left(1));
        painter.end();
        avatars.append(VLRAvatar(picture, name));
    }
    return avatars;
}

} // namespace

TEST(WidgetScreenshots, TheKitsViewsInTheirStates)
{
    // Tab buttons at rest, under the pointer, pressed and disabled; badges on
    // a tab and on a titled selector button, grey with the accent under the
    // pointer.
    Sheet buttons(560, 330, VLRColors::grey(233));
    buttons.write(16, 26, "Tab buttons", true);
    buttons.write(16, 136, "Badges on tabs", true);
    buttons.write(16, 246, "Titled buttons with badges", true);
    const char* const states[] = {"normal", "mouse over", "clicked", "disabled"};
    const struct
    {
        qint64 value;
        bool warning;
        const char* label;
    } badges[] = {{9, false, "9"}, {10, false, "10"}, {100, false, "100"}, {2, true, "warning"}};
    for (int i = 0; i < 4; ++i) {
        const int x = 16 + i * 136;
        QWidget pair;
        pair.resize(120, 44);
        for (const auto& [tab, left] : {std::pair("Workspaces", 4), std::pair("Marketplace", 60)}) {
            VLRButton* button = tabButton(tab, &pair, left);
            if (i == 1)
                sendEnterOrLeave(button, true);
            else if (i == 2)
                sendMouse(button, QEvent::MouseButtonPress);
            button->setEnabled(i != 3);
        }
        buttons.cell(&pair, x, 40, states[i], Qt::white);

        std::unique_ptr<VLRButton> transfers(tabButton("FileDrop"));
        transfers->setDefaultImage(asset("queue_main_icon_inactive"));
        auto selector = std::make_unique<VLRButton>(QRect(0, 0, 120, 32));
        selector->setTitle(i == 3 ? "Purchases" : "Uploads");
        selector->setTextColor(VLRColors::grey(151));
        selector->setMouseOverTextColor(VLRColors::mainAppColor());
        if (i == 1)
            sendEnterOrLeave(selector.get(), true);
        for (VLRButton* button : {transfers.get(), selector.get()}) {
            button->setBadgeIsWarning(badges[i].warning);
            button->setBadgeValue(badges[i].value);
        }
        buttons.cell(transfers.get(), x, 150, badges[i].label, Qt::white, 32);
        buttons.cell(selector.get(), x, 258, QStringLiteral("%1%2").arg(badges[i].label, i == 1 ? ", mouse over" : ""),
                     VLRColors::grey(250));
    }
    buttons.save("widgets-buttons.png");

    // Count badges, the warning triangle and level bars after they settle.
    Sheet indicators(420, 200, Qt::white);
    indicators.write(16, 26, "Badge", true);
    const qint64 values[] = {1, 9, 10, 99, 100, 4711};
    for (int i = 0; i < 7; ++i) {
        VLRBadgeView badge(i < 6 ? QRectF(0, 0, 26, 24) : QRectF(0, 0, 16, 16));
        badge.setIsWarning(i == 6);
        badge.setBadgeValue(i < 6 ? values[i] : 1);
        indicators.cell(&badge, 16 + i * 44, i < 6 ? 40 : 44, i < 6 ? QString::number(values[i]) : QString());
    }
    indicators.write(16 + 6 * 44, 80, "warning");
    indicators.write(16, 116, "Level", true);
    const qint64 levels[] = {0, 250, 700, 1000};
    for (int i = 0; i < 4; ++i) {
        VLRLevelView level;
        level.resize(84, 16);
        level.setBarColor(VLRColors::mainAppColor());
        level.setBorderColor(VLRColors::grey(206));
        level.setBackgroundColor(VLRColors::grey(250));
        level.setIntegerValue(levels[i]);
        invokeTimes(&level, "smoothingTimer", 400);
        indicators.cell(&level, 16 + i * 98, 130, QString::number(levels[i]));
    }
    indicators.save("widgets-badge-level.png");

    // Members that fit, and thirty behind an ellipsis.
    Sheet avatars(360, 180, VLRColors::grey(250));
    for (const int count : {4, 30}) {
        const int y = count == 4 ? 0 : 90;
        VLRAvatarListView list;
        list.resize(200, 28);
        list.setAvatars(members(count));
        avatars.write(16, y + 26, count == 4 ? "Members that fit" : "Overflow", true);
        const QString tip = list.avatarSlots().first().avatar.toolTip();
        avatars.cell(&list, 16, y + 38,
                     count == 4
                         ? QStringLiteral("4 members, room for 5")
                         : QStringLiteral("30 members: ellipsis, then 4; tip ends \"%1\"").arg(tip.section('\n', -1)));
    }
    avatars.save("widgets-avatars.png");

    // The status item signed out, idle, and every fourth frame of the busy
    // cycle, in light and dark mode.
    Sheet statusItem(540, 190, Qt::white);
    statusItem.fill(QRect(0, 96, 540, 94), QColor(43, 43, 46));
    for (const bool dark : {false, true}) {
        const int y = dark ? 126 : 30;
        const QColor text = dark ? VLRColors::grey(206) : VLRColors::textColor();
        statusItem.write(16, y - 10, dark ? "dark mode" : "light mode", false, text);
        for (int state = 1; state <= 2; ++state) {
            StatusItemImageView view(QRect(0, 0, 24, 24), true);
            view.setDarkMode(dark);
            view.setViewState(state);
            invokeTimes(&view, "animationTimer");
            statusItem.cell(&view, 16 + (state - 1) * 64, y, state == 1 ? "signed out" : "idle", Qt::transparent, 8,
                            text);
        }
        StatusItemImageView busy(QRect(0, 0, 24, 24), true);
        busy.setDarkMode(dark);
        busy.setViewState(3);
        for (int frame = 0; frame < 33; frame += 4) {
            invokeTimes(&busy, "animationTimer", frame == 0 ? 1 : 4);
            statusItem.cell(&busy, 144 + (frame / 4) * 42, y, QString::number(frame), Qt::transparent, 0, text);
        }
        statusItem.write(144, y + 60, "busy, frames 0 to 32", false, text);
    }
    statusItem.save("widgets-status-item.png");

    // A card with the default border, and a drop target under a drag.
    Sheet views(360, 140, Qt::white);
    QWidget host;
    for (const bool target : {false, true}) {
        auto* view = placed<VLRView>(&host, QRect(0, 0, 150, 90));
        view->setBackgroundColor(VLRColors::grey(target ? 233 : 250));
        if (!target)
            view->setBorderColor(VLRColors::grey(206));
        view->setDropTarget(target);
        sendDragEnter(view, filesMimeData({"/tmp/a.psd"}).get());
        views.cell(view, target ? 190 : 16, 30, QString());
        views.write(target ? 190 : 16, 20, target ? "drop target under a drag" : "card: border 2, radius 3");
    }
    views.save("widgets-views.png");
}
