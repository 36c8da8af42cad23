// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/charactersheet.h"

#include "ui_CharacterSheet.h"

#include <QCoreApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace luma {

namespace {

using Range = std::pair<char32_t, char32_t>;

struct CharacterGroup
{
    const char* name;
    std::vector<Range> ranges;
};

const std::vector<CharacterGroup>& characterGroups()
{
    static const std::vector<CharacterGroup> groups = {
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Punctuation"),
         {{0x2010, 0x2027},
          {0x2030, 0x203E},
          {0xA1, 0xA1},
          {0xA7, 0xAB},
          {0xAE, 0xAE},
          {0xB0, 0xB0},
          {0xB6, 0xB7},
          {0xBB, 0xBB},
          {0xBF, 0xBF},
          {0x2116, 0x2117},
          {0x2122, 0x2122},
          {0xA0, 0xA0},
          {0xAD, 0xAD},
          {0x2002, 0x200D},
          {0x202F, 0x202F},
          {0x2060, 0x2060}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Arrows"), {{0x2190, 0x21FF}, {0x27F5, 0x27FF}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Currency"), {{0xA2, 0xA5}, {0x20A0, 0x20C0}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Mathematics"),
         {{0xB1, 0xB1},
          {0xD7, 0xD7},
          {0xF7, 0xF7},
          {0xAC, 0xAC},
          {0xB2, 0xB3},
          {0xB9, 0xB9},
          {0xBC, 0xBE},
          {0x2070, 0x2071},
          {0x2074, 0x208E},
          {0x2150, 0x215E},
          {0x2200, 0x22FF}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Greek letters"),
         {{0x391, 0x3A1}, {0x3A3, 0x3A9}, {0x3B1, 0x3C9}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Letters with accents"),
         {{0xC0, 0xD6}, {0xD8, 0xF6}, {0xF8, 0x17F}, {0x218, 0x21B}, {0x1E9E, 0x1E9E}}},
        {QT_TRANSLATE_NOOP("luma::CharacterSheet", "Symbols"),
         {{0x2600, 0x26FF}, {0x2700, 0x27BF}, {0x25A0, 0x25FF}}}};
    return groups;
}

constexpr qsizetype mostFound = 500;
constexpr qsizetype mostRecent = 24;
constexpr int recentGroup = 0; // in the menu, the others follow

QList<char32_t>& recentCharacters()
{
    static QList<char32_t> characters;
    return characters;
}

QString characterText(char32_t character)
{
    return QString::fromUcs4(&character, 1);
}

QString codeOf(char32_t character)
{
    return QStringLiteral("U+%1").arg(static_cast<uint>(character), 4, 16, QLatin1Char('0')).toUpper();
}

bool mayBeInserted(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return category != QChar::Other_Control && category != QChar::Other_Surrogate &&
           category != QChar::Other_PrivateUse && category != QChar::Other_NotAssigned;
}

// With a size of its own, which a view's doesn't replace.
QFont scaledFont(const QWidget& widget, double factor)
{
    QFont font = widget.font();
    font.setPointSizeF(factor * QFontInfo(font).pointSizeF());
    return font;
}

// Names of what a page may hold; ideographs and syllables have none to search for.
struct NamedCharacter
{
    char32_t character;
    QString name; // with a blank in front
};

const std::vector<NamedCharacter>& namedCharacters()
{
    static const std::vector<NamedCharacter> characters = [] {
        std::vector<NamedCharacter> named;
        for (const auto& [first, last] :
             {Range{0xA0, 0x33FF}, Range{0xFB00, 0xFB06}, Range{0x1F000, 0x1FAFF}}) {
            for (char32_t character = first; character <= last; ++character) {
                if (mayBeInserted(character))
                    named.push_back({character, u' ' + CharacterSheet::nameOf(character)});
            }
        }
        return named;
    }();
    return characters;
}

} // namespace

CharacterSheet::CharacterSheet(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::CharacterSheet>())
{
    m_ui->setupUi(this);
    const QFont large = scaledFont(*this, 1.8);
    const int line = QFontMetrics(large).height();
    m_ui->characterList->setFont(large);
    m_ui->characterList->setGridSize({2 * line, 3 * line / 2});
    m_ui->characterGroup->addItem(tr("Recently inserted"));
    for (const CharacterGroup& group : characterGroups())
        m_ui->characterGroup->addItem(tr(group.name));
    m_ui->characterField->installEventFilter(this);
    connect(m_ui->characterField, &QLineEdit::textChanged, this, &CharacterSheet::fill);
    connect(m_ui->characterGroup, &QComboBox::currentIndexChanged, this, &CharacterSheet::fill);
    connect(m_ui->characterList, &QListWidget::currentItemChanged, this, &CharacterSheet::tellCurrent);
    connect(m_ui->characterList, &QListWidget::itemActivated, m_ui->characterButton, &QPushButton::click);
    connect(m_ui->characterCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->characterButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        const auto character =
            static_cast<char32_t>(m_ui->characterList->currentItem()->data(Qt::UserRole).toUInt());
        QList<char32_t>& recent = recentCharacters();
        recent.removeAll(character);
        recent.prepend(character);
        recent.resize(std::min(recent.size(), mostRecent));
        emit confirmed(characterText(character));
    });
}

CharacterSheet::~CharacterSheet() = default;

void CharacterSheet::begin()
{
    m_ui->characterField->clear();
    if (m_ui->characterGroup->currentIndex() == recentGroup && recentCharacters().isEmpty())
        m_ui->characterGroup->setCurrentIndex(recentGroup + 1);
    fill();
    open();
    m_ui->characterField->setFocus();
}

QString CharacterSheet::nameOf(char32_t character)
{
    std::array<char, 256> name{};
    UErrorCode error = U_ZERO_ERROR;
    const int32_t length = u_charName(static_cast<UChar32>(character), U_EXTENDED_CHAR_NAME, name.data(),
                                      static_cast<int32_t>(name.size()), &error);
    return QString::fromLatin1(name.data(), U_SUCCESS(error) != 0 ? length : 0);
}

QList<char32_t> CharacterSheet::found(const QString& text)
{
    QList<char32_t> characters;
    const QList<uint> letters = text.toUcs4();
    if (letters.size() == 1 && letters.first() > 0x7F && mayBeInserted(letters.first()))
        characters.append(letters.first());
    bool isCode = false;
    const QString digits = text.startsWith(QLatin1String("u+"), Qt::CaseInsensitive) ? text.mid(2) : text;
    const uint code = digits.toUInt(&isCode, 16);
    if (isCode && digits.size() >= 4 && code <= 0x10FFFF && mayBeInserted(code))
        characters.append(code);
    const QStringList words = text.toUpper().split(u' ', Qt::SkipEmptyParts);
    const auto fits = [&words](const NamedCharacter& each) {
        return std::all_of(words.begin(), words.end(),
                           [&each](const QString& word) { return each.name.contains(u' ' + word); });
    };
    std::vector<const NamedCharacter*> fitting;
    for (const NamedCharacter& each : namedCharacters()) {
        if (fits(each) && !characters.contains(each.character))
            fitting.push_back(&each);
    }
    // The shortest name has the least that wasn't asked for.
    std::stable_sort(fitting.begin(), fitting.end(),
                     [](const auto* a, const auto* b) { return a->name.size() < b->name.size(); });
    for (const NamedCharacter* each : fitting)
        characters.append(each->character);
    characters.resize(std::min(characters.size(), mostFound));
    return characters;
}

void CharacterSheet::fill()
{
    m_ui->characterList->clear();
    const QString text = m_ui->characterField->text().simplified();
    if (text.isEmpty()) {
        showGroup(m_ui->characterGroup->currentIndex());
    } else {
        const QList<char32_t> characters = found(text);
        for (const char32_t character : characters)
            add(character);
    }
    m_ui->characterList->setCurrentRow(0);
    tellCurrent();
}

void CharacterSheet::showGroup(int group)
{
    if (group == recentGroup) {
        for (const char32_t character : std::as_const(recentCharacters()))
            add(character);
        return;
    }
    for (const auto& [first, last] : characterGroups()[static_cast<std::size_t>(group - 1)].ranges) {
        for (char32_t character = first; character <= last; ++character) {
            if (mayBeInserted(character))
                add(character);
        }
    }
}

// What can't be seen shows its code.
void CharacterSheet::add(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    const bool isSeen = category != QChar::Other_Format && !QChar::isSpace(character);
    auto* const item = new QListWidgetItem(isSeen ? characterText(character) : codeOf(character).mid(2),
                                           m_ui->characterList);
    item->setTextAlignment(Qt::AlignCenter);
    item->setSizeHint(m_ui->characterList->gridSize());
    if (!isSeen)
        item->setFont(scaledFont(*this, 1));
    item->setData(Qt::UserRole, static_cast<uint>(character));
    item->setData(Qt::AccessibleTextRole, nameOf(character));
    item->setToolTip(nameOf(character));
}

void CharacterSheet::tellCurrent()
{
    const QListWidgetItem* const item = m_ui->characterList->currentItem();
    m_ui->characterButton->setEnabled(item);
    if (!item) {
        m_ui->characterName->setText(
            m_ui->characterField->text().isEmpty() ? QString() : tr("No character has this name."));
        return;
    }
    const auto character = static_cast<char32_t>(item->data(Qt::UserRole).toUInt());
    m_ui->characterName->setText(codeOf(character) + u' ' + nameOf(character));
}

bool CharacterSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
            return QCoreApplication::sendEvent(m_ui->characterList, event);
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace luma
