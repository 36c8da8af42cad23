// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/sourcepanel.h"

#include "ui_SourcePanel.h"
#include "web/codehighlighter.h"

#include <QMessageBox>
#include <QShortcut>
#include <QTextBlock>

namespace luma {

SourcePanel::SourcePanel(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::SourcePanel>())
{
    m_ui->setupUi(this);
    new CodeHighlighter(CodeHighlighter::Language::Html, m_ui->sourceField);
    connect(m_ui->sourceField, &QPlainTextEdit::textChanged, this, &SourcePanel::textDidChange);
    connect(m_ui->saveSourceButton, &QPushButton::clicked, this, &SourcePanel::save);
    connect(m_ui->sourceCancelButton, &QPushButton::clicked, this, &SourcePanel::reject);
    connect(m_ui->sourceFindField, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(m_ui->sourceFindNextButton, &QPushButton::clicked, this, [this] { find(false); });
    connect(m_ui->sourceFindPreviousButton, &QPushButton::clicked, this, [this] { find(true); });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &SourcePanel::showFind);
    connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this,
            [this] { find(false); });
    connect(new QShortcut(QKeySequence::FindPrevious, this), &QShortcut::activated, this,
            [this] { find(true); });
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, this, &SourcePanel::save);
}

SourcePanel::~SourcePanel() = default;

void SourcePanel::begin(const QString& source)
{
    m_ui->sourceField->setPlainText(source);
    m_ui->sourceField->document()->setModified(false);
    m_ui->saveSourceButton->setEnabled(false);
    m_ui->sourceFindResult->clear();
    open();
    m_ui->sourceField->setFocus();
}

void SourcePanel::textDidChange()
{
    m_ui->saveSourceButton->setEnabled(true);
}

void SourcePanel::save()
{
    if (!m_ui->saveSourceButton->isEnabled())
        return;
    const QString source = CodeEdit::textIn(*m_ui->sourceField);
    accept();
    emit saved(source);
}

void SourcePanel::reject()
{
    if (!m_ui->saveSourceButton->isEnabled()) {
        QDialog::reject();
        return;
    }
    auto* question =
        new QMessageBox(QMessageBox::Question, windowTitle(), tr("Discard the changes to the page source?"),
                        QMessageBox::Discard | QMessageBox::Cancel, this);
    question->setAttribute(Qt::WA_DeleteOnClose);
    connect(question->button(QMessageBox::Discard), &QAbstractButton::clicked, this,
            [this] { QDialog::reject(); });
    question->open();
}

void SourcePanel::showFind()
{
    m_ui->sourceFindField->setFocus();
    m_ui->sourceFindField->selectAll();
}

void SourcePanel::find(bool backward)
{
    const QString text = m_ui->sourceFindField->text();
    const QTextDocument::FindFlags flags =
        backward ? QTextDocument::FindFlags(QTextDocument::FindBackward) : QTextDocument::FindFlags();
    m_ui->sourceFindResult->clear();
    if (text.isEmpty() || m_ui->sourceField->find(text, flags))
        return;
    const QTextCursor before = m_ui->sourceField->textCursor();
    m_ui->sourceField->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    if (m_ui->sourceField->find(text, flags))
        return;
    m_ui->sourceField->setTextCursor(before);
    m_ui->sourceFindResult->setText(tr("Not found"));
}

} // namespace luma
