// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/sourcepanel.h"

#include "ui_SourcePanel.h"
#include "web/codehighlighter.h"

#include <QMessageBox>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>

#include <QTimer>

#include <algorithm>
#include <limits>

namespace luma {

namespace {

constexpr qsizetype pieceSize = qsizetype{16} << 10U; // characters that are shown and coloured at once

} // namespace

SourcePanel::SourcePanel(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::SourcePanel>())
{
    m_ui->setupUi(this);
    new CodeHighlighter(CodeHighlighter::Language::Html, m_ui->sourceField);
    connect(m_ui->sourceField, &QPlainTextEdit::textChanged, this, &SourcePanel::textDidChange);
    connect(m_ui->saveSourceButton, &QPushButton::clicked, this, &SourcePanel::save);
    connect(m_ui->sourceCancelButton, &QPushButton::clicked, this, &SourcePanel::reject);
    connect(m_ui->sourceTroubleButton, &QPushButton::clicked, m_ui->sourceField, &CodeEdit::goToNextProblem);
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

void SourcePanel::begin(const QString& source, qsizetype place)
{
    const QStringView before = QStringView(source).left(place);
    m_line = before.count(u'\n');
    m_column = place - (before.lastIndexOf(u'\n') + 1);
    m_rest = source;
    m_ui->sourceField->setReadOnly(true);
    m_ui->sourceField->document()->setUndoRedoEnabled(false);
    m_ui->sourceField->clear();
    m_ui->sourceFindResult->clear();
    showTrouble({});
    fill();
    open();
    m_ui->sourceField->setFocus();
}

// The window must go on responding while a source of megabytes is laid out and coloured.
void SourcePanel::fill()
{
    QPlainTextEdit& field = *m_ui->sourceField;
    const qsizetype feed = m_rest.indexOf(u'\n', std::min(pieceSize, m_rest.size()));
    QTextCursor end(field.document());
    end.movePosition(QTextCursor::End);
    end.insertText(m_rest.left(feed < 0 ? m_rest.size() : feed + 1));
    m_rest = feed < 0 ? QString() : m_rest.mid(feed + 1);
    const QTextBlock line = field.document()->findBlockByNumber(static_cast<int>(m_line));
    const bool isAtPlace = line.isValid() && line.length() > m_column;
    if (isAtPlace && (line.next().isValid() || m_rest.isEmpty())) {
        QTextCursor caret(line);
        caret.setPosition(line.position() + static_cast<int>(m_column));
        field.setTextCursor(caret);
        field.centerCursor();
        field.horizontalScrollBar()->setValue(0); // the window may not have its width yet
        m_line = std::numeric_limits<int>::max();
    }
    m_ui->saveSourceButton->setEnabled(false);
    if (!m_rest.isEmpty()) {
        QTimer::singleShot(0, this, &SourcePanel::fill);
        return;
    }
    field.setReadOnly(false);
    field.document()->setUndoRedoEnabled(true);
    field.document()->setModified(false);
}

void SourcePanel::refuse(const QString& reason, qsizetype place)
{
    showTrouble(reason);
    const QTextBlock line = m_ui->sourceField->document()->findBlock(static_cast<int>(place));
    m_ui->sourceTroubleButton->setVisible(place >= 0 && line.isValid());
    if (place < 0 || !line.isValid())
        return;
    const int end = line.position() + line.length() - 1;
    const int from = std::min(static_cast<int>(place), end);
    const qsizetype behindTag = line.text().indexOf(u'>', from - line.position());
    const int to = behindTag < 0 ? end : line.position() + static_cast<int>(behindTag) + 1;
    m_ui->sourceField->setProblems({{from, to, reason}});
    m_ui->sourceTrouble->setText(
        tr("Line %1, column %2: %3").arg(line.blockNumber() + 1).arg(from - line.position() + 1).arg(reason));
    m_ui->sourceTroubleButton->setAccessibleDescription(m_ui->sourceTrouble->text());
    m_ui->sourceTroubleButton->setFocus();
}

// Without a reason there is none.
void SourcePanel::showTrouble(const QString& reason)
{
    m_ui->sourceTrouble->setText(reason);
    m_ui->sourceTrouble->setVisible(!reason.isEmpty());
    m_ui->sourceTroubleButton->hide();
    m_ui->sourceField->setProblems({});
}

void SourcePanel::textDidChange()
{
    m_ui->saveSourceButton->setEnabled(m_rest.isEmpty());
}

void SourcePanel::save()
{
    if (!m_ui->saveSourceButton->isEnabled())
        return;
    showTrouble({});
    const QTextCursor caret = m_ui->sourceField->textCursor();
    emit saveRequested(CodeEdit::textIn(*m_ui->sourceField), caret.position());
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
