// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineeditor.h"

#include "editor/outlinemodel.h"
#include "editor/outlineview.h"
#include "editor/pageedits.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "page/elementchange.h"
#include "page/nodechange.h"
#include "page/tagrules.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>

namespace luma {

namespace {

constexpr int leastCharacters = 16;

} // namespace

OutlineEditor::OutlineEditor(OutlineView& view, PageEdits& edits, QObject* parent)
    : QObject(parent), m_view(view), m_edits(edits), m_field(new QLineEdit(view.viewport()))
{
    m_field->setObjectName(QStringLiteral("outlineEditor"));
    m_field->setAccessibleName(tr("Tag"));
    m_field->hide();
    m_field->installEventFilter(this);
    view.viewport()->installEventFilter(this);
    connect(&view, &OutlineView::editRequested, this, &OutlineEditor::begin);
    connect(view.verticalScrollBar(), &QScrollBar::valueChanged, this, &OutlineEditor::place);
    connect(view.horizontalScrollBar(), &QScrollBar::valueChanged, this, &OutlineEditor::place);
    // Queued: the view moves its rows after the model's signals.
    connect(view.model(), &QAbstractItemModel::rowsInserted, this, &OutlineEditor::place,
            Qt::QueuedConnection);
    connect(view.model(), &QAbstractItemModel::rowsRemoved, this, &OutlineEditor::place,
            Qt::QueuedConnection);
    connect(view.model(), &QAbstractItemModel::rowsMoved, this, &OutlineEditor::place, Qt::QueuedConnection);
    connect(view.model(), &QAbstractItemModel::modelReset, this, &OutlineEditor::place, Qt::QueuedConnection);
}

void OutlineEditor::begin(const QModelIndex& row)
{
    const html::Node* const node = OutlineModel::nodeAt(row);
    const html::Element* const element = OutlineModel::elementAt(row);
    if (!node || (element && element->is("title")))
        return;
    if (html::isServerCode(*node) || node->kind() == html::Node::Kind::Doctype) {
        emit refused(tr("This is edited in the page's source."));
        return;
    }
    m_isText = !element;
    if (m_isText && !isTextForLine(*node)) {
        emit sheetRequested(row);
        return;
    }
    m_row = row;
    m_view.scrollTo(row);
    if (m_isText)
        openText();
    else
        open(0);
}

bool OutlineEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_field) {
        if (event->type() == QEvent::Resize)
            place();
        return false;
    }
    if (event->type() == QEvent::KeyPress)
        return takeKey(*static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            commit(After::Close);
    }
    return false;
}

bool OutlineEditor::takeKey(const QKeyEvent& key)
{
    switch (key.key()) {
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        commit(After::Close);
        return true;
    case Qt::Key_Tab:
        commit(After::Next);
        return true;
    case Qt::Key_Backtab:
        commit(After::Previous);
        return true;
    default:
        return key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    }
}

void OutlineEditor::open(int part)
{
    const html::Element* const element = OutlineModel::elementAt(m_row);
    if (!element) {
        close();
        return;
    }
    m_attributes.clear();
    QStringList texts = {tagNameOf(*element)};
    for (const html::Attribute& attribute : element->attributes()) {
        if (html::withUnspelledCode(attribute.name) != attribute.name.text())
            continue; // The name is server code.
        m_attributes.push_back(attribute.name);
        texts.append(attributeText(attribute));
    }
    texts.append(QString());
    m_part = std::clamp(part, 0, static_cast<int>(texts.size()) - 1);
    const bool isNew = m_part == texts.size() - 1;
    m_field->setAccessibleName(m_part == 0 ? tr("Tag") : isNew ? tr("New attribute") : tr("Attribute"));
    m_field->setPlaceholderText(isNew ? tr("New attribute") : QString());
    m_field->setText(texts.at(m_part));
    show();
}

void OutlineEditor::openText()
{
    const html::Node& node = *OutlineModel::nodeAt(m_row);
    m_field->setAccessibleName(node.kind() == html::Node::Kind::Text ? tr("Text") : tr("Comment"));
    m_field->setPlaceholderText(QString());
    m_field->setText(textInLine(node));
    show();
}

void OutlineEditor::show()
{
    m_field->selectAll();
    place();
    m_isOpen = true;
    m_field->show();
    m_field->setFocus();
}

void OutlineEditor::commit(After after)
{
    if (!m_isOpen || m_field->isReadOnly()) // While it is read-only, an edit is being made.
        return;
    m_field->setReadOnly(true);
    const auto then = [self = QPointer(this), after](bool isDone) {
        if (self)
            self->goOn(isDone, after);
    };
    const std::size_t attribute = static_cast<std::size_t>(std::max(m_part - 1, 0));
    if (m_isText)
        m_edits.changeText(m_row, m_field->text(), then);
    else if (m_part == 0)
        m_edits.changeTag(m_row, m_field->text(), then);
    else
        m_edits.changeAttribute(m_row,
                                attribute < m_attributes.size() ? m_attributes[attribute] : std::string(),
                                m_field->text(), then);
}

void OutlineEditor::goOn(bool isDone, After after)
{
    m_field->setReadOnly(false);
    if (!m_isOpen) // by Escape meanwhile
        return;
    if (!isDone) {
        m_field->selectAll();
        return;
    }
    if (m_isText) {
        close();
        return;
    }
    const bool isNewOne = m_part > static_cast<int>(m_attributes.size());
    const bool isEmpty = m_field->text().trimmed().isEmpty();
    if (m_part == 0)
        m_row = m_view.currentIndex(); // Another tag is another row.
    if (after == After::Close || (isNewOne && isEmpty && after == After::Next))
        close();
    else if (after == After::Previous)
        open(m_part - 1);
    else
        open(isEmpty ? m_part : m_part + 1);
}

void OutlineEditor::place()
{
    if (m_row.isValid()) {
        const QRect row = m_view.visualRect(m_row);
        const QSize room = m_view.viewport()->size();
        const int least = leastCharacters * m_field->fontMetrics().averageCharWidth();
        const int left = std::max(0, std::min(row.left(), room.width() - least));
        const int height = m_field->sizeHint().height();
        m_field->setGeometry(left, row.center().y() - height / 2, room.width() - left, height);
    } else if (m_isOpen && !m_field->isReadOnly()) {
        close();
    }
}

void OutlineEditor::close()
{
    m_isOpen = false;
    m_row = QPersistentModelIndex();
    m_field->setReadOnly(false);
    if (m_field->hasFocus())
        m_view.setFocus();
    m_field->hide();
}

} // namespace luma
