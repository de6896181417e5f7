#include "ui/panel/PanelHeader.h"

#include "ui/art/AvatarButton.h"
#include "ui/common/IconButton.h"
#include "ui/panel/StatusLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Below this width the library button shows its icon only, so that every button still fits.
constexpr int narrow = 480;

QToolButton *libraryButton()
{
    auto *button = new IconButton(QStringLiteral("books.vertical"),
                                  QStringLiteral("所有保存的课：录音、文字稿和笔记（Ctrl+L）"), nullptr, 14);
    button->setText(QStringLiteral("课程记录"));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    return button;
}

} // namespace

PanelHeader::PanelHeader(QWidget *parent)
    : QWidget(parent)
    , title_(new QLabel(QStringLiteral("Quillet")))
    , status_(new StatusLine)
    , avatar_(new AvatarButton(40))
    , record_(new QPushButton)
    , library_(libraryButton())
    , subtitles_(new IconButton(QStringLiteral("captions.bubble"), QStringLiteral("显示 / 隐藏字幕条")))
    , chat_(new IconButton(QStringLiteral("bubble.left.and.text.bubble.right"), QStringLiteral("AI 问答小窗（Ctrl+3）")))
    , slides_(new IconButton(QStringLiteral("rectangle.on.rectangle.angled"), QStringLiteral("课件（拖入 PDF，AI 跟着老师翻页）")))
    , merge_(new IconButton(QStringLiteral("rectangle.split.1x2"), QString()))
    , pin_(new IconButton(QStringLiteral("pin.fill"), QStringLiteral("置顶 / 取消置顶")))
    , settings_(new IconButton(QStringLiteral("gearshape"), QStringLiteral("设置")))
{
    QFont titleFont = title_->font();
    titleFont.setPixelSize(15);
    titleFont.setWeight(QFont::DemiBold);
    title_->setFont(titleFont);
    title_->setAlignment(Qt::AlignCenter);

    QFont recordFont = record_->font();
    recordFont.setPixelSize(12);
    recordFont.setWeight(QFont::DemiBold);
    recordFont.setStyleHint(QFont::Monospace, QFont::PreferDefault);
    record_->setFont(recordFont);
    record_->setCursor(Qt::PointingHandCursor);
    record_->setFixedHeight(26);
    record_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    auto *tools = new QHBoxLayout;
    tools->setSpacing(4);
    tools->addWidget(avatar_);
    tools->addStretch(1);
    for (QWidget *control : {static_cast<QWidget *>(record_), static_cast<QWidget *>(library_),
                             static_cast<QWidget *>(subtitles_), static_cast<QWidget *>(chat_),
                             static_cast<QWidget *>(slides_), static_cast<QWidget *>(merge_),
                             static_cast<QWidget *>(pin_), static_cast<QWidget *>(settings_)})
        tools->addWidget(control);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 6, 14, 6);
    column->setSpacing(2);
    column->addWidget(title_);
    column->addWidget(status_);
    column->addSpacing(4);
    column->addLayout(tools);

    setRecording(false, {});
    setMerged(false);
}

void PanelHeader::setRecording(bool recording, const QString &time)
{
    if (recording) {
        record_->setText(u"■ 停止  " + time);
        record_->setToolTip(QStringLiteral("停止录音并保存（Ctrl+R）"));
        record_->setStyleSheet(QStringLiteral(
            "QPushButton { color: #ff3b30; background: rgba(255,59,48,0.12); border: 1px solid rgba(255,59,48,0.35);"
            " border-radius: 13px; padding: 0 10px; }"
            "QPushButton:hover { background: rgba(255,59,48,0.2); }"));
    } else {
        record_->setText(QStringLiteral("● 开始"));
        record_->setToolTip(QStringLiteral("开始录音和翻译（Ctrl+R）"));
        record_->setStyleSheet(QStringLiteral(
            "QPushButton { color: white; background: #ff3b30; border: none; border-radius: 13px; padding: 0 12px; }"
            "QPushButton:hover { background: #ff5147; } QPushButton:pressed { background: #d92f26; }"));
    }
}

void PanelHeader::setMerged(bool merged)
{
    merge_->setSymbol(merged ? QStringLiteral("rectangle.split.1x2.fill") : QStringLiteral("rectangle.split.1x2"));
    merge_->setDescription(merged ? QStringLiteral("把字幕条分开") : QStringLiteral("把字幕条合并到对话窗口上方"));
    merge_->setTint(merged ? IconButton::Tint::accent : IconButton::Tint::secondary);
}

void PanelHeader::setPinned(bool pinned)
{
    pin_->setSymbol(pinned ? QStringLiteral("pin.fill") : QStringLiteral("pin.slash"));
    pin_->setDescription(pinned ? QStringLiteral("取消置顶（点别的窗口时可以盖住它）")
                                : QStringLiteral("置顶（一直显示在最上面）"));
    pin_->setTint(pinned ? IconButton::Tint::accent : IconButton::Tint::secondary);
}

void PanelHeader::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    library_->setToolButtonStyle(width() < narrow ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
    status_->setMaximumWidth(std::max(80, width() - 160));
}
