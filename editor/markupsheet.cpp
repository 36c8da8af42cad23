// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/markupsheet.h"

#include "editor/outlinemodel.h"
#include "editor/pageedits.h"
#include "page/nodechange.h"
#include "ui_MarkupSheet.h"
#include "web/codehighlighter.h"

#include <QPointer>
#include <QShortcut>

namespace luma {

MarkupSheet::MarkupSheet(PageEdits& edits, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::MarkupSheet>()), m_edits(edits)
{
    m_ui->setupUi(this);
    m_ui->markupReason->hide();
    m_ui->markupField->setLineWrapMode(QPlainTextEdit::WidgetWidth); // many a page has one line
    new CodeHighlighter(CodeHighlighter::Language::Html, m_ui->markupField);
    connect(m_ui->markupCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->markupButton, &QPushButton::clicked, this, &MarkupSheet::commit);
    for (const QKeySequence& key :
         {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(QKeySequence::Save)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &MarkupSheet::commit);
    connect(m_ui->markupField, &QPlainTextEdit::textChanged, m_ui->markupReason, &QWidget::hide);
    connect(&edits, &PageEdits::refused, this, [this](const QString& reason) {
        m_ui->markupReason->setText(reason);
        m_ui->markupReason->setVisible(isVisible());
    });
}

MarkupSheet::~MarkupSheet() = default;

void MarkupSheet::begin(const QModelIndex& row)
{
    const html::Node* const node = OutlineModel::nodeAt(row);
    if (!node)
        return;
    m_row = row;
    m_ui->markupField->setPlainText(markupToEdit(*node));
    m_ui->markupReason->hide();
    open();
    m_ui->markupField->setFocus();
}

void MarkupSheet::commit()
{
    m_edits.changeMarkup(m_row, CodeEdit::textIn(*m_ui->markupField), [self = QPointer(this)](bool isDone) {
        if (self && isDone)
            self->accept();
    });
}

} // namespace luma
