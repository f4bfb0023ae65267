#include "widgets/StatusItemImageView.h"
#include "widgets/VLRAvatarListView.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRColors.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRLevelView.h"
#include "widgets/VLRView.h"

#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <QPainter>

#include <gmock/gmock.h>

// Pictures of the kit's views in their states, for a person to look at:
// written under the build's screenshots folder.

namespace {

constexpr qreal kScale = 2;

class Sheet
{
public:
    Sheet(int width, int height, const QColor& ground = VLRColors::grey(233))
        : m_image(QSize(width, height) * kScale, QImage::Format_ARGB32)
    {
        m_image.setDevicePixelRatio(kScale);
        m_image.fill(ground);
        m_painter.begin(&m_image);
        m_painter.setRenderHint(QPainter::TextAntialiasing);
    }

    void caption(int x, int y, const QString& text, const QColor& color = VLRColors::grey(151))
    {
        m_painter.setFont(VLRFonts::muli(11));
        m_painter.setPen(color);
        m_painter.drawText(QPointF(x, y), text);
    }

    void title(int x, int y, const QString& text)
    {
        m_painter.setFont(VLRFonts::muli(13, QFont::Bold));
        m_painter.setPen(VLRColors::textColor());
        m_painter.drawText(QPointF(x, y), text);
    }

    void fill(const QRect& rect, const QColor& color) { m_painter.fillRect(rect, color); }

    void place(QWidget* widget, int x, int y)
    {
        widget->render(&m_painter, QPoint(x, y), QRegion(), QWidget::DrawChildren);
    }

    void save(const QString& name)
    {
        m_painter.end();
        const QDir folder(QStringLiteral(VELURIA_SCREENSHOT_DIR));
        ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
        const QString path = folder.filePath(name);
        ASSERT_TRUE(m_image.save(path)) << path.toStdString();
    }

private:
    QImage m_image;
    QPainter m_painter;
};

QPixmap asset(const QString& name)
{
    return VLRImageCatalogue::imageNamed(name, QSize(), kScale);
}

void sendEnter(QWidget* widget)
{
    QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QCoreApplication::sendEvent(widget, &event);
}

void sendPress(QWidget* widget)
{
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(2, 2), QPointF(2, 2), QPointF(2, 2), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

// A tab of the popover's bar: pictures for rest, pointer and press.
std::unique_ptr<VLRButton> tabButton(const QString& tab)
{
    auto button = std::make_unique<VLRButton>(QRect(0, 0, 56, 44));
    button->setDefaultImage(asset(QStringLiteral("tabBar%1Unselected").arg(tab)));
    button->setMouseOverImage(asset(QStringLiteral("tabBar%1MouseOver").arg(tab)));
    button->setClickedImage(asset(QStringLiteral("tabBar%1Selected").arg(tab)));
    return button;
}

// A text tab of a page's selector: grey title, accent under the pointer.
std::unique_ptr<VLRButton> textButton(const QString& title)
{
    auto button = std::make_unique<VLRButton>(QRect(0, 0, 120, 32));
    VLRAttributedString attributed = button->attributedTitle();
    attributed.string = title;
    button->setAttributedTitle(attributed);
    button->setTextColor(VLRColors::grey(151));
    button->setMouseOverTextColor(VLRColors::mainAppColor());
    button->setClickStyle(VLRClickStyleBackground);
    return button;
}

QList<VLRAvatar> members(int count)
{
    static const char* const names[] = {"Ada Lovelace", "Grace Hopper", "Alan Turing", "Edsger Dijkstra",
                                        "Barbara Liskov", "Donald Knuth", "Frances Allen", "Ken Thompson"};
    static const QColor colours[] = {QColor(242, 103, 35), QColor(88, 88, 91), QColor(231, 129, 105),
                                     QColor(151, 151, 151), QColor(90, 140, 200), QColor(120, 170, 90)};
    QList<VLRAvatar> avatars;
    for (int i = 0; i < count; ++i) {
        QPixmap picture(QSize(48, 48));
        picture.fill(colours[i % 6]);
        QPainter painter(&picture);
        painter.setPen(Qt::white);
        painter.setFont(VLRFonts::muli(20, QFont::Bold));
        const QString name = QString::fromLatin1(names[i % 8]);
        const QString initials = name.left(1) + name.section(' ', 1).left(1);
        painter.drawText(picture.rect(), Qt::AlignCenter, initials);
        painter.end();
        avatars.append(VLRAvatar(picture, name));
    }
    return avatars;
}

} // namespace

TEST(WidgetScreenshots, Buttons)
{
    Sheet sheet(560, 330);
    sheet.title(16, 26, "Tab buttons");
    const char* const states[] = {"normal", "mouse over", "clicked", "disabled"};
    for (int state = 0; state < 4; ++state) {
        auto workspaces = tabButton("Workspaces");
        auto marketplace = tabButton("Marketplace");
        if (state == 1) {
            sendEnter(workspaces.get());
            sendEnter(marketplace.get());
        } else if (state == 2) {
            sendPress(workspaces.get());
            sendPress(marketplace.get());
        } else if (state == 3) {
            workspaces->setEnabled(false);
            marketplace->setEnabled(false);
        }
        const int x = 16 + state * 136;
        sheet.fill(QRect(x, 40, 120, 44), Qt::white);
        sheet.place(workspaces.get(), x + 4, 40);
        sheet.place(marketplace.get(), x + 60, 40);
        sheet.caption(x, 100, states[state]);
    }

    sheet.title(16, 136, "Badges on tabs");
    const struct
    {
        qint64 value;
        bool warning;
        const char* label;
    } badges[] = {{9, false, "9"}, {10, false, "10"}, {100, false, "100"}, {2, true, "warning"}};
    for (int i = 0; i < 4; ++i) {
        auto transfers = tabButton("FileDrop");
        transfers->setDefaultImage(asset("queue_main_icon_inactive"));
        transfers->setBadgeIsWarning(badges[i].warning);
        transfers->setBadgeValue(badges[i].value);
        const int x = 16 + i * 136;
        sheet.fill(QRect(x, 150, 120, 44), Qt::white);
        sheet.place(transfers.get(), x + 32, 150);
        sheet.caption(x, 210, badges[i].label);
    }

    sheet.title(16, 246, "Titled buttons with badges");
    for (int i = 0; i < 4; ++i) {
        auto uploads = textButton(i == 3 ? "Purchases" : "Uploads");
        if (i == 1)
            sendEnter(uploads.get());
        uploads->setBadgeIsWarning(badges[i].warning);
        uploads->setBadgeValue(badges[i].value);
        const int x = 16 + i * 136;
        sheet.fill(QRect(x, 258, 120, 32), VLRColors::grey(250));
        sheet.place(uploads.get(), x, 258);
        sheet.caption(x, 306, QStringLiteral("%1%2").arg(badges[i].label, i == 1 ? ", mouse over" : ""));
    }
    sheet.save("widgets-buttons.png");
}

TEST(WidgetScreenshots, BadgesAndLevels)
{
    Sheet sheet(420, 200, Qt::white);
    sheet.title(16, 26, "Badge");
    const qint64 values[] = {1, 9, 10, 99, 100, 4711};
    for (int i = 0; i < 6; ++i) {
        VLRBadgeView badge(QRectF(0, 0, 26, 24));
        badge.setBadgeValue(values[i]);
        sheet.place(&badge, 16 + i * 44, 40);
        sheet.caption(16 + i * 44, 80, QString::number(values[i]));
    }
    VLRBadgeView warning(QRectF(0, 0, 16, 16));
    warning.setIsWarning(true);
    warning.setBadgeValue(1);
    sheet.place(&warning, 16 + 6 * 44, 44);
    sheet.caption(16 + 6 * 44, 80, "warning");

    sheet.title(16, 116, "Level");
    const qint64 levels[] = {0, 250, 700, 1000};
    for (int i = 0; i < 4; ++i) {
        VLRLevelView level;
        level.resize(84, 16);
        level.setBarColor(VLRColors::mainAppColor());
        level.setBorderColor(VLRColors::grey(206));
        level.setBackgroundColor(VLRColors::grey(250));
        level.setIntegerValue(levels[i]);
        for (int tick = 0; tick < 400; ++tick)
            ASSERT_TRUE(QMetaObject::invokeMethod(&level, "__smoothingTimer"));
        sheet.place(&level, 16 + i * 98, 130);
        sheet.caption(16 + i * 98, 166, QString::number(levels[i]));
    }
    sheet.save("widgets-badge-level.png");
}

TEST(WidgetScreenshots, AvatarLists)
{
    Sheet sheet(360, 180, VLRColors::grey(250));
    sheet.title(16, 26, "Members that fit");
    VLRAvatarListView fits;
    fits.resize(200, 28);
    fits.setAvatars(members(4));
    sheet.place(&fits, 16, 40);
    sheet.caption(16, 84, "4 members, room for 5");

    sheet.title(16, 116, "Overflow");
    VLRAvatarListView overflow;
    overflow.resize(200, 28);
    overflow.setAvatars(members(30));
    sheet.place(&overflow, 16, 128);
    const QString tip = overflow.avatarSlots().first().avatar.toolTip();
    sheet.caption(16, 172, QStringLiteral("30 members: ellipsis, then 4; tip ends \"%1\"").arg(tip.section('\n', -1)));
    sheet.save("widgets-avatars.png");
}

TEST(WidgetScreenshots, StatusItem)
{
    Sheet sheet(540, 190, Qt::white);
    sheet.fill(QRect(0, 96, 540, 94), QColor(43, 43, 46));
    const auto tick = [](StatusItemImageView& view, int count) {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(QMetaObject::invokeMethod(&view, "__animationTimer"));
    };
    for (int dark = 0; dark < 2; ++dark) {
        const int y = 30 + dark * 96;
        const QColor text = dark ? VLRColors::grey(206) : VLRColors::textColor();
        sheet.caption(16, y - 10, dark ? "dark mode" : "light mode", text);
        const char* const stateNames[] = {"signed out", "idle"};
        for (int state = 1; state <= 2; ++state) {
            StatusItemImageView view(QRect(0, 0, 24, 24), true);
            view.setDarkMode(dark);
            view.setViewState(state);
            tick(view, 1);
            const int x = 16 + (state - 1) * 64;
            sheet.place(&view, x + 8, y);
            sheet.caption(x, y + 44, stateNames[state - 1], text);
        }
        StatusItemImageView busy(QRect(0, 0, 24, 24), true);
        busy.setDarkMode(dark);
        busy.setViewState(3);
        for (int frame = 0; frame < 33; frame += 4) {
            tick(busy, frame == 0 ? 1 : 4);
            const int x = 144 + (frame / 4) * 42;
            sheet.place(&busy, x, y);
            sheet.caption(x + 2, y + 44, QStringLiteral("%1").arg(frame), text);
        }
        sheet.caption(144, y + 60, "busy, frames 0 to 32", text);
    }
    sheet.save("widgets-status-item.png");
}

TEST(WidgetScreenshots, ViewsWithBorderAndDropRing)
{
    Sheet sheet(360, 140, Qt::white);
    VLRView card;
    card.resize(150, 90);
    card.setBackgroundColor(VLRColors::grey(250));
    card.setBorderColor(VLRColors::grey(206));
    sheet.place(&card, 16, 30);
    sheet.caption(16, 20, "card: border 2, radius 3");

    QWidget host;
    host.resize(150, 90);
    auto* target = new VLRView(&host);
    target->resize(150, 90);
    target->setBackgroundColor(VLRColors::grey(233));
    target->setDropTarget(true);
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile("/tmp/a.psd")});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    sheet.place(target, 190, 30);
    sheet.caption(190, 20, "drop target under a drag");
    sheet.save("widgets-views.png");
}
