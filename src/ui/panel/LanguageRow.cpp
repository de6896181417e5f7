#include "ui/panel/LanguageRow.h"

#include "settings/Language.h"
#include "ui/common/IconButton.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace {

struct ShowSegment
{
    const char16_t *symbol;
    const char16_t *tip;
    const char16_t *value;
};
constexpr ShowSegment segments[] = {
    {u"rectangle.split.2x1", u"翻译和 AI 都显示", u"both"},
    {u"captions.bubble", u"只看翻译", u"translation"},
    {u"sparkles", u"只看 AI", u"ai"},
};

QComboBox *languagePopup(const QString &tip)
{
    auto *popup = new QComboBox;
    for (const Language &language : Language::all())
        popup->addItem(language.label, language.id);
    popup->setToolTip(tip);
    QFont font = popup->font();
    font.setPixelSize(12);
    popup->setFont(font);
    popup->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return popup;
}

IconButton *mark(const QString &symbol, const QString &description)
{
    auto *button = new IconButton(symbol, description, nullptr, 13);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAttribute(Qt::WA_TransparentForMouseEvents);
    return button;
}

} // namespace

LanguageRow::LanguageRow(QWidget *parent)
    : QWidget(parent)
    , view_(new QButtonGroup(this))
    , lecture_(languagePopup(QStringLiteral("原文语言")))
    , answer_(languagePopup(QStringLiteral("翻译成")))
    , extrasButton_(new QToolButton)
    , menu_(new QMenu(this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 4, 12, 4);
    row->setSpacing(6);
    auto *switcher = new QHBoxLayout;
    switcher->setSpacing(0);
    int index = 0;
    for (const ShowSegment &segment : segments) {
        auto *button = new IconButton(QString::fromUtf16(segment.symbol), QString::fromUtf16(segment.tip), nullptr, 13);
        button->setCheckable(true);
        button->setFixedWidth(30);
        view_->addButton(button, index++);
        switcher->addWidget(button);
    }
    row->addLayout(switcher);
    auto *separator = new QFrame;
    separator->setFrameShape(QFrame::VLine);
    separator->setFixedHeight(14);
    row->addWidget(separator);
    row->addWidget(mark(QStringLiteral("ear"), QStringLiteral("上课语言")));
    row->addWidget(lecture_);
    // The menu opens under the button by hand: a button's own menu would draw an arrow over
    // the last name.
    extrasButton_->setAutoRaise(true);
    extrasButton_->setToolTip(QStringLiteral("也可能出现的语言（会同时识别）"));
    extrasButton_->setFont(lecture_->font());
    row->addWidget(extrasButton_);
    auto *swapButton = new IconButton(QStringLiteral("arrow.left.arrow.right"), QStringLiteral("两边语言对调"), nullptr, 13);
    row->addWidget(swapButton);
    row->addWidget(mark(QStringLiteral("eye"), QStringLiteral("我看的语言")));
    row->addWidget(answer_);
    row->addStretch(1);

    connect(view_, &QButtonGroup::idClicked, this, [this](int id) { onShow(QString::fromUtf16(segments[id].value)); });
    connect(lecture_, &QComboBox::activated, this, [this] { languagesChanged(); });
    connect(answer_, &QComboBox::activated, this, [this] { languagesChanged(); });
    connect(swapButton, &QToolButton::clicked, this, [this] { swap(); });
    connect(extrasButton_, &QToolButton::clicked, this,
            [this] { menu_->popup(extrasButton_->mapToGlobal(QPoint(0, extrasButton_->height()))); });
    selectShow(QStringLiteral("both"));
    refreshExtras();
}

void LanguageRow::setLanguages(const QString &lecture, const QString &answer, const QStringList &extras)
{
    const int lectureRow = lecture_->findData(Language::find(lecture).id);
    const int answerRow = answer_->findData(Language::find(answer).id);
    lecture_->setCurrentIndex(lectureRow >= 0 ? lectureRow : 0);
    answer_->setCurrentIndex(answerRow >= 0 ? answerRow : 1);
    extras_ = extras;
    refreshExtras();
}

void LanguageRow::selectShow(const QString &show)
{
    int index = 0;
    for (int i = 0; i < int(std::size(segments)); ++i) {
        if (show == QString::fromUtf16(segments[i].value))
            index = i;
    }
    view_->button(index)->setChecked(true);
    for (QAbstractButton *button : view_->buttons())
        static_cast<IconButton *>(button)->setTint(button->isChecked() ? IconButton::Tint::accent
                                                                         : IconButton::Tint::secondary);
}

QString LanguageRow::lecture() const
{
    return lecture_->currentData().toString();
}

QString LanguageRow::answer() const
{
    return answer_->currentData().toString();
}

QString LanguageRow::extrasTitle() const
{
    return extrasButton_->text();
}

void LanguageRow::swap()
{
    const int lecture = lecture_->currentIndex();
    lecture_->setCurrentIndex(answer_->currentIndex());
    answer_->setCurrentIndex(lecture);
    languagesChanged();
}

void LanguageRow::toggleExtra(const QString &id)
{
    if (!extras_.removeOne(id))
        extras_.append(id);
    refreshExtras();
    onExtras(extras_);
}

void LanguageRow::languagesChanged()
{
    refreshExtras();
    onLanguages(lecture(), answer());
}

void LanguageRow::refreshExtras()
{
    const QString lecture = this->lecture();
    QStringList names;
    for (const QString &id : std::as_const(extras_)) {
        if (id != lecture)
            names << Language::find(id).label;
    }
    extrasButton_->setText(names.isEmpty() ? QStringLiteral("＋") : u"＋" + names.join(u"、"));
    menu_->clear();
    menu_->addAction(QStringLiteral("也可能出现："))->setEnabled(false);
    for (const Language &language : Language::all()) {
        if (language.id == lecture)
            continue;
        QAction *item = menu_->addAction(language.label);
        item->setData(language.id);
        item->setCheckable(true);
        item->setChecked(extras_.contains(language.id));
        connect(item, &QAction::triggered, this, [this, id = language.id] { toggleExtra(id); });
    }
}
