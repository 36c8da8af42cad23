// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/comparisonwindow.h"

#include "base/encoding.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/usertext.h"
#include "base/utf8.h"
#include "browser/countedtext.h"

#include <QFile>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t largestText = std::uintmax_t{8} * 1024 * 1024;

Result<std::string> textOf(const fs::path& file)
{
    if (file.empty())
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Connect both sides first"))};
    std::error_code failure;
    if (fs::file_size(file, failure) > largestText && !failure)
        return Error{ComparisonWindow::tr("The files are too large to be shown").toStdString()};
    auto bytes = readFile(file);
    if (!bytes)
        return bytes;
    if (bytes->find('\0') != std::string::npos)
        return Error{ComparisonWindow::tr("The files are no text").toStdString()};
    return isValidUtf8(*bytes) ? *std::move(bytes) : Encoding::windows1252().decoded(*bytes);
}

// See-through, so that they suit light and dark themes.
constexpr QColor changedLeft(220, 0, 0, 70);
constexpr QColor changedRight(0, 160, 0, 70);
constexpr QColor missing(128, 128, 128, 160);

enum class Mark { None, Changed, Missing };

void showLines(QPlainTextEdit& view, const QStringList& lines, const std::vector<Mark>& marks,
               const QColor& changed)
{
    view.setPlainText(lines.join(u'\n'));
    QTextBlockFormat format;
    QTextCursor cursor(view.document());
    cursor.beginEditBlock();
    for (QTextBlock block = view.document()->begin(); block.isValid(); block = block.next()) {
        const Mark mark = marks[static_cast<std::size_t>(block.blockNumber())];
        if (mark == Mark::None)
            continue;
        format.setBackground(mark == Mark::Changed ? QBrush(changed) : QBrush(missing, Qt::BDiagPattern));
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
    }
    cursor.endEditBlock();
    view.moveCursor(QTextCursor::Start);
}

} // namespace

ComparisonWindow::ComparisonWindow(const Side& left, const Side& right, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("comparisonWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QFile::decodeName(left.file.filename().c_str()));
    buildWindow(left, right);
    compare(left, right);
}

ComparisonWindow::~ComparisonWindow()
{
    m_workItem->cancel();
}

QPlainTextEdit* ComparisonWindow::makeText(const Side& side)
{
    auto* const view = new QPlainTextEdit;
    view->setReadOnly(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view->setAccessibleName(side.title);
    return view;
}

void ComparisonWindow::buildWindow(const Side& left, const Side& right)
{
    m_left = makeText(left);
    m_right = makeText(right);
    m_left->setObjectName(QStringLiteral("comparisonLeft"));
    m_right->setObjectName(QStringLiteral("comparisonRight"));
    auto* const texts = new QGridLayout;
    int column = 0;
    for (const auto& [side, view] : {std::pair(&left, m_left), std::pair(&right, m_right)}) {
        auto* const title = new QLabel(side->title);
        title->setTextFormat(Qt::PlainText);
        title->setToolTip(QFile::decodeName(side->file.c_str()));
        texts->addWidget(title, 0, column);
        texts->addWidget(view, 1, column++);
    }
    // Lines that stand beside each other stay there.
    for (const auto& [one, other] : {std::pair(m_left, m_right), std::pair(m_right, m_left)}) {
        connect(one->verticalScrollBar(), &QScrollBar::valueChanged, other->verticalScrollBar(),
                &QScrollBar::setValue);
        connect(one->horizontalScrollBar(), &QScrollBar::valueChanged, other->horizontalScrollBar(),
                &QScrollBar::setValue);
    }
    m_status = new QLabel(tr("Comparing"));
    m_status->setObjectName(QStringLiteral("comparisonStatus"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    m_previous = new QPushButton(tr("&Previous Difference"));
    m_next = new QPushButton(tr("&Next Difference"));
    m_next->setObjectName(QStringLiteral("nextDifference"));
    m_next->setDefault(true);
    auto* const closeButton = new QPushButton(tr("Close"));
    connect(m_previous, &QPushButton::clicked, this, [this] { goTo(-1); });
    connect(m_next, &QPushButton::clicked, this, [this] { goTo(1); });
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    auto* const foot = new QHBoxLayout;
    foot->addWidget(m_status, 1);
    for (QPushButton* button : {m_previous, m_next, closeButton})
        foot->addWidget(button);
    for (QPushButton* button : {m_previous, m_next})
        button->setEnabled(false);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(texts, 1);
    all->addLayout(foot);
    resize(1000, 600);
}

Result<ComparisonWindow::Texts> ComparisonWindow::readTexts(const fs::path& left, const fs::path& right,
                                                            const WorkItem& item)
{
    const auto leftText = textOf(left);
    if (!leftText)
        return leftText.error();
    const auto rightText = textOf(right);
    if (!rightText)
        return rightText.error();
    auto lines = comparedLines(*leftText, *rightText, [&item] { return !item.isCancelled(); });
    if (!lines)
        return lines.error();
    const bool areEqual =
        std::all_of(lines->begin(), lines->end(), [](const auto& line) { return line.isEqual; });
    return Texts{.lines = *std::move(lines), .differInLineEnds = areEqual && *leftText != *rightText};
}

void ComparisonWindow::compare(const Side& left, const Side& right)
{
    start(m_workItem, [self = QPointer(this), left = left.file, right = right.file](const WorkItem& item) {
        const auto texts = readTexts(left, right, item);
        onMain(self, [&](ComparisonWindow& window) { window.showTexts(texts); });
    });
}

void ComparisonWindow::showTexts(const Result<Texts>& texts)
{
    if (!texts) {
        m_status->setText(QString::fromStdString(texts.error().text));
        return;
    }
    QStringList lefts;
    QStringList rights;
    std::vector<Mark> leftMarks;
    std::vector<Mark> rightMarks;
    bool wasEqual = true;
    for (const ComparedLine& line : texts->lines) {
        lefts.append(QString::fromStdString(line.left));
        rights.append(QString::fromStdString(line.right));
        const auto markOf = [&line](bool isThere) {
            return line.isEqual ? Mark::None : isThere ? Mark::Changed : Mark::Missing;
        };
        leftMarks.push_back(markOf(line.isOnLeft));
        rightMarks.push_back(markOf(line.isOnRight));
        if (wasEqual && !line.isEqual)
            m_differences.push_back(static_cast<int>(leftMarks.size()) - 1);
        wasEqual = line.isEqual;
    }
    // An empty text has one block.
    leftMarks.resize(std::max<std::size_t>(leftMarks.size(), 1));
    rightMarks.resize(leftMarks.size());
    showLines(*m_left, lefts, leftMarks, changedLeft);
    showLines(*m_right, rights, rightMarks, changedRight);
    m_status->setText(texts->differInLineEnds ? tr("Only the ends of lines differ")
                      : m_differences.empty()
                          ? tr("The texts are the same")
                          : counted(m_differences.size(), tr("difference"), tr("differences")));
    for (QPushButton* button : {m_previous, m_next})
        button->setEnabled(!m_differences.empty());
    goTo(0);
}

// To the difference after (1) or before (-1) the line of the cursor, or at it (0: or the first one).
void ComparisonWindow::goTo(int step)
{
    if (m_differences.empty())
        return;
    const int line = m_left->textCursor().blockNumber();
    auto found = m_differences.begin();
    if (step > 0)
        found = std::upper_bound(m_differences.begin(), m_differences.end(), line);
    else if (step < 0)
        found = std::lower_bound(m_differences.begin(), m_differences.end(), line);
    if (step < 0)
        found = found == m_differences.begin() ? m_differences.end() - 1 : found - 1;
    else if (found == m_differences.end())
        found = m_differences.begin();
    for (QPlainTextEdit* view : {m_left, m_right})
        view->setTextCursor(QTextCursor(view->document()->findBlockByNumber(*found)));
    m_left->centerCursor();
}

} // namespace luma
