// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/itemproperties.h"

#include "base/filecalls.h"
#include "base/folderreader.h"
#include "base/mainhop.h"
#include "base/pathtext.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QPointer>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

struct Contents
{
    std::size_t files = 0;
    std::size_t folders = 0;
    std::uintmax_t bytes = 0;
};

// The item, and all below it that can be read.
void add(const std::string& item, Contents& contents, const WorkItem& work)
{
    struct stat status = {};
    if (work.isCancelled() || isMainHopClosed() || ::lstat(item.c_str(), &status) != 0)
        return;
    if (!S_ISDIR(status.st_mode)) {
        ++contents.files;
        contents.bytes += S_ISREG(status.st_mode) ? static_cast<std::uintmax_t>(status.st_size) : 0;
        return;
    }
    ++contents.folders;
    if (auto folder = FolderReader::open(item)) {
        while (const auto entry = folder->next())
            add(item + '/' + entry->name(), contents, work);
    }
}

QString permissions(mode_t mode)
{
    QString text;
    for (int shift = 6; shift >= 0; shift -= 3) {
        const unsigned bits = (mode >> shift) & 7U;
        text += QLatin1Char((bits & 4U) ? 'r' : '-');
        text += QLatin1Char((bits & 2U) ? 'w' : '-');
        text += QLatin1Char((bits & 1U) ? 'x' : '-');
        text += u' ';
    }
    return text + QStringLiteral("(%1)").arg(mode & 07777U, 3, 8, QLatin1Char('0'));
}

// The database must not read the file itself: as long as a silent server lets it wait, it is locked for all others.
QString typeOf(const fs::path& item, const struct stat& status)
{
    const QMimeDatabase types;
    if (S_ISDIR(status.st_mode))
        return types.mimeTypeForName(QStringLiteral("inode/directory")).comment();
    QByteArray begin;
    if (auto file = openFile(item.native(), O_RDONLY | O_NONBLOCK); file && S_ISREG(status.st_mode)) {
        begin.resize(16384);
        begin.resize(std::max<ssize_t>(::read(file->get(), begin.data(), std::size_t(begin.size())), 0));
    }
    return types.mimeTypeForFileNameAndData(textOf(item), begin).comment();
}

} // namespace

/// What is read of an item.
struct ItemProperties::Facts
{
    std::optional<struct stat> status; // none if it is no longer there
    QString type;
    std::string target; // of a link
};

ItemProperties::ItemProperties(const std::vector<fs::path>& items, QWidget* parent)
    : QDialog(parent), m_form(new QFormLayout)
{
    setObjectName(QStringLiteral("itemProperties"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Properties"));
    setMinimumWidth(360);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(m_form);
    all->addStretch();
    all->addWidget(buttons);
    if (items.size() == 1) {
        addRow("propertyName", tr("Name"), displayText(items.front().filename().native()));
        addRow("propertyPlace", tr("Folder"), displayText(items.front().parent_path().native()));
        read(items.front());
    } else {
        addRow("propertyItems", tr("Items"), QLocale().toString(static_cast<qulonglong>(items.size())));
        count(items);
    }
}

ItemProperties::~ItemProperties()
{
    if (m_count)
        m_count->cancel();
}

void ItemProperties::addRow(const char* name, const QString& title, const QString& text)
{
    auto* const label = new QLabel(text, this);
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_form->addRow(title, label);
}

void ItemProperties::read(const fs::path& item)
{
    start(std::make_shared<WorkItem>(), [guard = QPointer(this), item](const WorkItem&) {
        Facts facts;
        struct stat status = {};
        if (::lstat(item.c_str(), &status) == 0) {
            std::error_code error;
            facts.status = status;
            if (S_ISLNK(status.st_mode))
                facts.target = fs::read_symlink(item, error).native();
            else
                facts.type = typeOf(item, status);
        }
        onMain(guard, [&](ItemProperties& self) {
            self.showFacts(facts);
            if (facts.status && S_ISDIR(facts.status->st_mode))
                self.count({item});
            self.adjustSize();
        });
    });
}

void ItemProperties::showFacts(const Facts& facts)
{
    if (!facts.status) {
        addRow("propertyKind", tr("Kind"), tr("No longer there"));
        return;
    }
    const struct stat& status = *facts.status;
    const bool isLink = S_ISLNK(status.st_mode);
    addRow("propertyKind", tr("Kind"), isLink ? tr("Symbolic link") : facts.type);
    if (isLink)
        addRow("propertyTarget", tr("Leads to"), displayText(facts.target));
    const QLocale locale;
    if (S_ISREG(status.st_mode))
        addRow("propertySize", tr("Size"),
               tr("%1 (%2 bytes)")
                   .arg(locale.formattedDataSize(status.st_size), locale.toString(status.st_size)));
    addRow("propertyTime", tr("Changed"),
           locale.toString(QDateTime::fromSecsSinceEpoch(status.st_mtime), QLocale::LongFormat));
    addRow("propertyMode", tr("Permissions"), permissions(status.st_mode));
}

void ItemProperties::count(const std::vector<fs::path>& items)
{
    addRow("propertyContents", tr("Contents"), tr("Counting..."));
    m_contents = findChild<QLabel*>(QStringLiteral("propertyContents"));
    m_count = std::make_shared<WorkItem>();
    const QPointer<ItemProperties> guard(this);
    start(m_count, [guard, items](const WorkItem& work) {
        Contents contents;
        for (const fs::path& item : items)
            add(item.native(), contents, work);
        if (items.size() == 1 && contents.folders > 0)
            --contents.folders; // the folder itself
        onMain(guard, [&](ItemProperties& self) {
            const QLocale locale;
            self.m_contents->setText(counted(contents.files, tr("file"), tr("files")) + QLatin1String(", ") +
                                     counted(contents.folders, tr("folder"), tr("folders")) +
                                     QLatin1String(", ") +
                                     locale.formattedDataSize(static_cast<qint64>(contents.bytes)));
        });
    });
}

} // namespace luma
