// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/csscompletion.h"

#include "editor/cssvocabulary.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int mostRowsShown = 10; // shown at a time
constexpr qsizetype mostWords = 200;

const QStringList& atRules()
{
    static const QStringList names = {
        QStringLiteral("@charset"), QStringLiteral("@container"), QStringLiteral("@font-face"),
        QStringLiteral("@import"),  QStringLiteral("@keyframes"), QStringLiteral("@layer"),
        QStringLiteral("@media"),   QStringLiteral("@page"),      QStringLiteral("@supports")};
    return names;
}

const QStringList& pseudoNames()
{
    static const QStringList names =
        QStringLiteral(
            ":active :checked :disabled :empty :enabled :first-child :first-of-type :focus "
            ":focus-visible :focus-within :hover :invalid :is() :lang() :last-child :last-of-type :link "
            ":not() :nth-child() :nth-of-type() :only-child :placeholder-shown :required :root :target "
            ":valid :visited :where() ::after ::before ::first-letter ::first-line ::marker "
            "::placeholder ::selection")
            .split(u' ');
    return names;
}

QStringList marked(QChar mark, const QStringList& names)
{
    QStringList result;
    for (const QString& name : names)
        result.append(mark + name);
    return result;
}

/// Those that begin with the word, then those in which a part does.
QStringList matching(const QString& word, const QStringList& names)
{
    QStringList first;
    QStringList second;
    for (const QString& name : names) {
        if (name.startsWith(word, Qt::CaseInsensitive))
            first.append(name);
        else if (!word.isEmpty() && word.front().isLetter() &&
                 name.contains(u'-' + word, Qt::CaseInsensitive))
            second.append(name);
    }
    first.append(second);
    first.removeDuplicates();
    // What has another browser's prefix, only where nothing else is left.
    std::stable_partition(first.begin(), first.end(), [](const QString& name) {
        return !name.startsWith(u'-') || name.startsWith(QLatin1String("--"));
    });
    return first.mid(0, mostWords);
}

/// The names and colours that the text itself has.
QStringList foundIn(const QString& text, const QRegularExpression& expression)
{
    QStringList found;
    auto matches = expression.globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    found.removeDuplicates();
    return found;
}

QStringList customNames(const QString& text)
{
    static const QRegularExpression name(QStringLiteral("(?<![-\\w])--[-\\w]+(?=\\s*:)"));
    return foundIn(text, name);
}

QStringList coloursIn(const QString& text)
{
    static const QRegularExpression colour(
        QStringLiteral("#(?:[0-9a-f]{8}|[0-9a-f]{6}|[0-9a-f]{3,4})(?=\\s*[;,)}\\s])"),
        QRegularExpression::CaseInsensitiveOption);
    return foundIn(text, colour);
}

} // namespace

CssCompletion::CssCompletion(QPlainTextEdit* field, CssVocabulary& vocabulary)
    : CssCompletion(field,
                    {[field] { return field->toPlainText().left(field->textCursor().position()); },
                     [field] { return field->toPlainText().mid(field->textCursor().position()); },
                     [field] { return field->cursorRect().translated(field->viewport()->pos()); },
                     [field](qsizetype length, const QString& text, int back) {
                         QTextCursor cursor = field->textCursor();
                         cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor,
                                             static_cast<int>(length));
                         cursor.insertText(text);
                         cursor.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, back);
                         field->setTextCursor(cursor);
                     }},
                    vocabulary)
{
    connect(field->verticalScrollBar(), &QScrollBar::valueChanged, m_list, &QWidget::hide);
}

CssCompletion::CssCompletion(QLineEdit* field, const QString& property, CssVocabulary& vocabulary)
    : CssCompletion(field,
                    {[field, property] {
                         const QString before = field->text().left(field->cursorPosition());
                         return QStringLiteral("a{") +
                                (property.isEmpty() ? before : property + u':' + before);
                     },
                     [field] { return field->text().mid(field->cursorPosition()); },
                     [field] { return QRect(0, 0, 1, field->height()); },
                     [field](qsizetype length, const QString& text, int back) {
                         const int at = field->cursorPosition();
                         field->setSelection(at - static_cast<int>(length), static_cast<int>(length));
                         field->insert(text);
                         field->cursorBackward(false, back);
                     }},
                    vocabulary)
{}

CssCompletion::CssCompletion(QWidget* field, Access access, CssVocabulary& vocabulary)
    : QObject(field), m_field(field), m_access(std::move(access)), m_vocabulary(vocabulary)
{
    m_list = new QListWidget(field->window());
    m_list->setObjectName(QStringLiteral("cssCompletions"));
    m_list->setAccessibleName(tr("Completions"));
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setUniformItemSizes(true);
    m_list->setAutoFillBackground(true);
    m_list->setFrameShape(QFrame::StyledPanel);
    m_list->setFont(field->font());
    m_list->hide();
    connect(m_list, &QListWidget::itemClicked, this, &CssCompletion::take);
    field->installEventFilter(this);
}

CssCompletion::~CssCompletion()
{
    if (m_list)
        m_list->deleteLater();
}

bool CssCompletion::isShown() const
{
    return m_list && m_list->isVisible();
}

void CssCompletion::suggest(Begin begin)
{
    const CssPlace place = cssPlaceBehind(m_access.textBefore());
    m_list->hide();
    if (place.kind == CssPlace::Kind::Nothing || (begin == Begin::WithWord && place.word.isEmpty()))
        return;
    collect(place);
}

void CssCompletion::collect(const CssPlace& place)
{
    using Kind = CssPlace::Kind;
    const QString text = m_access.textBefore() + m_access.textBehind();
    if (place.kind == Kind::AtRule) {
        offer(place, atRules());
    } else if (place.kind == Kind::Value && !place.word.startsWith(QLatin1String("--"))) {
        m_vocabulary.askForValues(place.property, this, [this, place, text](const QStringList& values) {
            const bool takesColours = values.contains(QLatin1String("rgb()"));
            offer(place, takesColours ? values + coloursIn(text) : values);
        });
    } else {
        m_vocabulary.ask(this, [this, place, text](const CssVocabulary::Words& words) {
            QStringList custom = words.customProperties + customNames(text);
            custom.sort();
            if (place.kind == Kind::Selector)
                offer(place,
                      words.tags + marked(u'.', words.classes) + marked(u'#', words.ids) + pseudoNames());
            else
                offer(place, place.kind == Kind::Value ? custom : words.properties + custom);
        });
    }
}

void CssCompletion::offer(const CssPlace& place, QStringList words)
{
    const CssPlace now = cssPlaceBehind(m_access.textBefore());
    if (now.kind != place.kind || now.word != place.word || !m_field->hasFocus())
        return;
    words = matching(place.word, words);
    m_list->clear();
    m_list->addItems(words);
    m_place = place;
    if (words.isEmpty() || words == QStringList{place.word})
        return;
    m_list->setCurrentRow(0);
    placeList();
    m_list->show();
    m_list->raise();
    // In front of the filter that a delegate has put on its editor.
    m_field->removeEventFilter(this);
    m_field->installEventFilter(this);
    tellCurrent();
}

// Below the cursor, or above it where there is more room.
void CssCompletion::placeList()
{
    const QWidget& window = *m_list->parentWidget();
    const QRect cursor(m_field->mapTo(m_field->window(), m_access.cursor().topLeft()),
                       m_access.cursor().size());
    const int frame = 2 * m_list->frameWidth();
    const int wanted = frame + m_list->sizeHintForRow(0) * std::min(m_list->count(), mostRowsShown);
    const int below = window.height() - cursor.bottom();
    const bool isBelow = below >= wanted || below >= cursor.top();
    const int height = std::min(wanted, isBelow ? below : cursor.top());
    const int width =
        std::min(frame + m_list->sizeHintForColumn(0) + m_list->verticalScrollBar()->sizeHint().width() + 8,
                 window.width());
    m_list->setGeometry(std::clamp(cursor.left(), 0, window.width() - width),
                        isBelow ? cursor.bottom() + 1 : cursor.top() - height, width, height);
}

// The field keeps the focus, so screen readers would not speak of the row.
void CssCompletion::tellCurrent()
{
    QAccessibleEvent event(m_list, QAccessible::Focus);
    event.setChild(m_list->currentRow());
    QAccessible::updateAccessibility(&event);
}

void CssCompletion::take()
{
    const QListWidgetItem* const item = m_list->currentItem();
    m_list->hide();
    if (!item)
        return;
    QString text = item->text();
    int back = text.endsWith(QLatin1String("()")) ? 1 : 0;
    const QString behind = m_access.textBehind().trimmed();
    if (m_place.kind == CssPlace::Kind::Property && !behind.startsWith(u':'))
        text += QStringLiteral(": ");
    m_access.replace(m_place.word.size(), text, back);
    m_field->setFocus();
}

bool CssCompletion::takeKey(int key)
{
    const int row = m_list->currentRow();
    const int last = m_list->count() - 1;
    switch (key) {
    case Qt::Key_Down:
        m_list->setCurrentRow(row == last ? 0 : row + 1);
        break;
    case Qt::Key_Up:
        m_list->setCurrentRow(row == 0 ? last : row - 1);
        break;
    case Qt::Key_PageDown:
        m_list->setCurrentRow(std::min(row + mostRowsShown, last));
        break;
    case Qt::Key_PageUp:
        m_list->setCurrentRow(std::max(row - mostRowsShown, 0));
        break;
    case Qt::Key_Escape:
        m_list->hide();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        // What is there already needs no key of its own.
        if (m_list->currentItem() && m_list->currentItem()->text() == m_place.word) {
            m_list->hide();
            return false;
        }
        take();
        return true;
    default:
        return false;
    }
    tellCurrent();
    return true;
}

bool CssCompletion::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_field)
        return false;
    if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide ||
        event->type() == QEvent::MouseButtonPress) {
        m_list->hide();
        return false;
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const auto& press = *static_cast<QKeyEvent*>(event);
    const bool isPlain = (press.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (event->type() == QEvent::ShortcutOverride) {
        if (isShown() && press.key() == Qt::Key_Escape)
            event->accept();
        return isShown() && press.key() == Qt::Key_Escape;
    }
    if (press.key() == Qt::Key_Space && press.modifiers() == Qt::ControlModifier) {
        suggest(Begin::Anywhere);
        return true;
    }
    if (isShown() && isPlain && takeKey(press.key()))
        return true;
    // The key changes the text first.
    const bool types = !press.text().isEmpty() && press.text().front().isPrint() &&
                       !(press.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (types || (press.key() == Qt::Key_Backspace && isShown()))
        QMetaObject::invokeMethod(
            this, [this] { suggest(Begin::WithWord); }, Qt::QueuedConnection);
    else if (press.key() != Qt::Key_Shift)
        m_list->hide();
    return false;
}

} // namespace luma
