// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagestore.h"

#include "base/aside.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "html/pagelanguage.h"
#include "html/pagesource.h"
#include "html/pagewriter.h"
#include "html/prettyprinter.h"
#include "html/treecomparison.h"
#include "links/linkmapping.h"
#include "page/kepthistory.h"
#include "page/lostelements.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"
#include "page/pagewriting.h"
#include "page/sitefolder.h"
#include "page/subtreechange.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QUndoStack>

#include <algorithm>
#include <future>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t smallPage = std::size_t{64} << 10U; // bytes that are written in no time

using AttributeChanges = std::vector<std::pair<html::Element*, std::vector<html::Attribute>>>;

QString stepNameOf(const LinksUpdate& update)
{
    return update.action.empty() ? QObject::tr("Update Links") : QString::fromStdString(update.action);
}

bool isLink(const html::Attribute& attribute)
{
    return std::find(linkAttributes.begin(), linkAttributes.end(), attribute.name) != linkAttributes.end();
}

void rebase(std::vector<html::Attribute>& attributes, const fs::path& oldFolder, const fs::path& newFolder)
{
    for (html::Attribute& attribute : attributes) {
        if (isLink(attribute) && !attribute.value.starts_with('/'))
            attribute.value = rebasedLink(attribute.value, oldFolder, newFolder);
    }
}

AttributeChanges rebased(const html::Document& document, const fs::path& oldFolder, const fs::path& newFolder)
{
    AttributeChanges changes;
    for (html::Element* element : document.select("*")) {
        std::vector<html::Attribute> attributes = element->attributes();
        rebase(attributes, oldFolder, newFolder);
        if (attributes != element->attributes())
            changes.emplace_back(element, std::move(attributes));
    }
    return changes;
}

constexpr std::size_t mostLinks = 200; // whose files are looked for, perhaps on a slow share

bool mayLeadUp(std::string_view link)
{
    return link.starts_with('/') || link.find("..") != std::string_view::npos;
}

bool mayBeSite(const fs::path& folder)
{
    const std::string home = QFile::encodeName(QDir::homePath()).toStdString();
    return folder.has_parent_path() && folder.parent_path() != folder.root_path() &&
           !isAtOrBelow(home, folder.native());
}

/// `folder`, or the one around it that the link needs to reach an existing file.
fs::path folderWith(const SiteFolder& page, std::string_view link, const fs::path& folder)
{
    std::error_code ignored;
    const auto file = page.fileOfLink(link);
    const bool isFromRoot = link.starts_with('/');
    if (!file || (!isFromRoot && isAtOrBelow(file->native(), folder.native())))
        return folder;
    const fs::path below = file->lexically_relative(page.folder());
    for (fs::path around = folder; mayBeSite(around); around = around.parent_path()) {
        const fs::path wanted = isFromRoot ? around / below : *file;
        if (isAtOrBelow(wanted.native(), around.native()) && fs::is_regular_file(wanted, ignored))
            return around;
    }
    return folder;
}

// The page's text is needed only when it is saved or kept.
void packSource(const PageTree& tree)
{
    if (tree.document() && tree.document()->origin().source)
        tree.document()->origin().source->pack();
}

void swapAll(AttributeChanges& changes)
{
    for (auto& [element, attributes] : changes)
        element->swapAttributes(attributes);
}

// Two spellings may lead to one file.
bool isSameFile(const fs::path& a, const fs::path& b)
{
    std::error_code error;
    return a == b || (a.filename() == b.filename() && fs::equivalent(a, b, error));
}

// The attributes alone where nothing else differs, so that the page keeps its nodes.
MarkupDifference linkDifference(html::Document& mine, html::Document& theirs)
{
    const std::vector<html::Element*> elements = mine.select("*");
    const std::vector<html::Element*> others = theirs.select("*");
    AttributeChanges changes;
    for (std::size_t i = 0; i < elements.size() && i < others.size(); ++i) {
        if (elements[i]->attributes() != others[i]->attributes())
            changes.emplace_back(elements[i], others[i]->attributes());
    }
    swapAll(changes);
    const bool isAll = html::smallestDifferent(mine, theirs) == nullptr;
    swapAll(changes);
    if (!isAll)
        return differenceTo(mine, theirs);
    MarkupDifference difference;
    difference.attributes = std::move(changes);
    return difference;
}

} // namespace

/// A save that is under way.
struct PageStore::Saving
{
    explicit Saving(PageWriting&& page) : writing(std::move(page)) {}

    PageWriting writing;
    fs::path target;
    bool isRebased = false;
    std::uint64_t version = 0; // of the tree
    Saved done;
    std::future<void> written;
};

PageStore::PageStore(PageTree& tree, QUndoStack& stack) : m_tree(tree), m_stack(stack) {}

PageStore::~PageStore() = default;

void PageStore::setLocation(const fs::path& path, Origin origin)
{
    finishSaving();
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    m_docURL = (error ? path : absolute).lexically_normal();
    m_linkBase = m_docURL;
    m_hasFile = origin == Origin::File;
    m_beginning.reset();
    m_file = PageFile(m_docURL);
}

void PageStore::setTemplate(const fs::path& path, const fs::path& folder)
{
    setLocation(path, Origin::Template);
    m_linkBase = (folder / "Untitled.html").lexically_normal();
}

fs::path PageStore::folderOfLinks() const
{
    const SiteFolder alone(m_linkBase, {});
    fs::path folder = alone.folder();
    std::set<std::string_view> links;
    for (const html::Element* element : m_tree.document()->select("*")) {
        for (const html::Attribute& attribute : element->attributes()) {
            if (links.size() < mostLinks && isLink(attribute) && mayLeadUp(attribute.value) &&
                links.insert(attribute.value).second)
                folder = folderWith(alone, attribute.value, folder);
        }
    }
    return folder;
}

Result<void> PageStore::load(const QString& name)
{
    finishSaving();
    const auto bytes = m_beginning ? Result<std::string>(*m_beginning) : m_file.read();
    if (!bytes)
        return bytes.error();
    const html::PageLanguage language = html::pageLanguage(m_docURL, *bytes);
    if (language.kind == html::PageLanguage::Kind::OtherXml)
        return Error{userText(
            QT_TRANSLATE_NOOP("luma::Engines", "%1 is not HTML but XML, with the root element <%2>."),
            {m_docURL.native(), language.rootElement})};
    auto parsed = m_codec.read(*bytes, language.markup());
    if (!parsed)
        return Error{m_docURL.string() + ": " + parsed.error().text};
    m_language = language.markup();
    m_isXhtml = language.kind == html::PageLanguage::Kind::Xhtml;
    m_isWellFormed = m_isXhtml && html::isWellFormedXml(*bytes);
    m_lostElements = lostElements(*bytes);
    m_size = bytes->size();
    if (html::Document* document = m_tree.document()) {
        const html::NodePtr read = (*parsed)->copy();
        document->setByteOrderMark((*parsed)->hasByteOrderMark());
        PageCommands(m_tree, m_stack)
            .apply(differenceTo(*document, **parsed), name, PageCommands::Merging::Separate);
        html::PageSource::transfer(static_cast<html::Document&>(*read), *document);
    } else {
        m_tree.setDocument(std::move(*parsed));
        m_stack.clear();
    }
    packSource(m_tree);
    m_stack.setClean();
    return {};
}

void PageStore::followFile(const fs::path& path)
{
    finishSaving();
    m_docURL = path.lexically_normal();
    m_file.setPath(m_docURL);
}

Result<void> PageStore::updateLinks(const LinksUpdate& update)
{
    finishSaving();
    if (!m_hasFile)
        return {};
    const fs::path oldPlace = std::exchange(m_linkBase, m_docURL);
    if (!m_tree.document())
        return {};
    const auto written =
        std::find_if(update.files.begin(), update.files.end(),
                     [this](const LinksUpdate::File& file) { return isSameFile(file.path, m_docURL); });
    const bool isWritten = written != update.files.end();
    if (isWritten && written->newHash == m_file.knownHash())
        return {};
    if (m_stack.isClean() && changedOnDisk())
        return load(stepNameOf(update));
    if (!update.updated)
        return {};
    if (auto changed = changeText(update, oldPlace); !changed)
        return changed;
    if (isWritten && written->oldHash == m_file.knownHash() && m_file.adopt(written->newHash))
        m_stack.resetClean();
    return {};
}

Result<void> PageStore::changeText(const LinksUpdate& update, const fs::path& oldPlace)
{
    html::Document& document = *m_tree.document();
    const std::string before = markup();
    const auto after = update.updated(before, oldPlace, m_docURL);
    if (!after)
        return after.error();
    if (*after == before)
        return {};
    const auto page = m_codec.typed(*after, document);
    if (!page)
        return page.error();
    PageCommands(m_tree, m_stack)
        .apply(linkDifference(document, **page), stepNameOf(update), PageCommands::Merging::Separate);
    return {};
}

bool PageStore::hasPage() const
{
    return m_tree.document() != nullptr;
}

std::string PageStore::markup() const
{
    return m_tree.document() ? html::patchedPage(*m_tree.document()) : std::string();
}

Result<void> PageStore::setMarkup(std::string_view markup)
{
    html::Document* const document = m_tree.document();
    if (!document || html::patchedPage(*document) == markup)
        return {};
    // An editor of text knows but one line end.
    std::string text;
    for (const char c : markup)
        c == '\n' && document->origin().source ? text.append(document->origin().source->lineEnd())
                                               : text.append(1, c);
    return replaceMarkup(text, QObject::tr("Edit Source"));
}

Result<void> PageStore::setSource(const std::string& source, const QString& name)
{
    const html::Document* const document = m_tree.document();
    if (!document || html::patchedPage(*document) == source)
        return {};
    return replaceMarkup(source, name);
}

Result<void> PageStore::recover(std::string_view markup)
{
    return setSource(std::string(markup), QObject::tr("Unsaved Edits"));
}

Result<void> PageStore::replaceMarkup(const std::string& text, const QString& name)
{
    finishSaving();
    html::Document& document = *m_tree.document();
    auto page = m_codec.typed(text, document);
    if (!page)
        return page.error();
    document.trustServerCode((*page)->serverCode());
    PageCommands(m_tree, m_stack).replacePage(*std::move(page), name);
    packSource(m_tree);
    return {};
}

void PageStore::setShownInLines(const std::vector<std::vector<int>>& paths)
{
    m_inLines.clear();
    if (!m_tree.document())
        return;
    for (const std::vector<int>& path : paths) {
        if (const html::Element* const element = elementAtPath(*m_tree.document(), path))
            m_inLines.insert(element);
    }
}

Result<void> PageStore::tidy()
{
    finishSaving();
    if (!m_tree.document() ||
        html::patchedPage(*m_tree.document()) == html::prettyPrint(*m_tree.document(), m_inLines))
        return {};
    auto printed = m_codec.printed(*m_tree.document(), m_inLines);
    if (!printed)
        return printed.error();
    PageCommands(m_tree, m_stack).replacePage(*std::move(printed), QObject::tr("Tidy Page Source"));
    packSource(m_tree);
    return {};
}

PageStore::Loss PageStore::lossOfSaving()
{
    finishSaving();
    Loss loss;
    if (!m_tree.document() || (!m_isWellFormed && m_lostElements.empty()))
        return loss;
    std::string bytes;
    if (tidiesWhenSaving()) {
        bytes = html::prettyPrint(*m_tree.document(), m_inLines);
    } else if (auto page = m_codec.write(*m_tree.document(), m_language)) {
        bytes = std::move(page->bytes);
    } else {
        return loss; // saving will say why
    }
    loss.isXml = m_isWellFormed && !html::isWellFormedXml(bytes);
    const std::vector<std::string> kept = lostElements(bytes);
    for (const std::string& name : m_lostElements) {
        if (std::find(kept.begin(), kept.end(), name) == kept.end())
            loss.elements.push_back(name);
    }
    return loss;
}

Result<void> PageStore::saveCopy(const fs::path& path)
{
    finishSaving();
    if (!m_tree.document())
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "there is no page to save"))};
    AttributeChanges changes = rebased(*m_tree.document(), m_linkBase.parent_path(), path.parent_path());
    swapAll(changes);
    PageWriting writing(*m_tree.document(), m_codec, m_language, PageFile(path));
    swapAll(changes);
    writing.write();
    return writing.result();
}

void PageStore::placeIn(const fs::path& folder)
{
    if (m_hasFile || !m_tree.document())
        return;
    AttributeChanges changes = rebased(*m_tree.document(), m_linkBase.parent_path(), folder);
    swapAll(changes);
    m_linkBase = (folder / "Untitled.html").lexically_normal();
}

void PageStore::startSaving(const fs::path& path, Saved done)
{
    finishSaving();
    if (!m_tree.document()) {
        done(Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "there is no page to save"))});
        return;
    }
    const fs::path target = path.lexically_normal();
    AttributeChanges changes;
    // Where the page's file has just moved, the move is still to change its links.
    const bool isRebased = target != m_docURL && target.parent_path() != m_linkBase.parent_path();
    if (isRebased)
        changes = rebased(*m_tree.document(), m_linkBase.parent_path(), target.parent_path());
    swapAll(changes);
    m_saving = std::make_unique<Saving>(
        PageWriting(*m_tree.document(), m_codec, m_language, target == m_docURL ? m_file : PageFile(target)));
    swapAll(changes);
    m_saving->target = target;
    m_saving->isRebased = isRebased;
    m_saving->version = m_tree.version();
    m_saving->done = std::move(done);
    // A thread of its own: the pool's may all wait for servers.
    m_saving->written = std::async(std::launch::async, [this, saving = m_saving.get()] {
        saving->writing.write();
        const auto finish = [this, saving] {
            if (m_saving.get() == saving)
                finishSaving();
        };
        QMetaObject::invokeMethod(&m_receiver, finish, Qt::QueuedConnection);
    });
    if (m_size < smallPage)
        finishSavingSoon();
}

bool PageStore::finishSavingSoon()
{
    if (m_saving && m_saving->written.wait_for(patienceWithFiles) != std::future_status::ready)
        return false;
    finishSaving();
    return true;
}

void PageStore::finishSaving()
{
    if (!m_saving)
        return;
    std::shared_ptr<Saving> saving = std::move(m_saving);
    saving->written.wait();
    const Result<void> result = takeSaved(*saving);
    const Saved done = std::move(saving->done);
    // Two trees of a large page take their time to go.
    QMetaObject::invokeMethod(
        &m_receiver, [saving] {}, Qt::QueuedConnection);
    saving.reset();
    if (done)
        done(result);
}

Result<void> PageStore::save(const fs::path& path)
{
    Result<void> saved;
    startSaving(path, [&saved](const Result<void>& result) { saved = result; });
    finishSaving();
    return saved;
}

Result<void> PageStore::takeSaved(Saving& saving)
{
    PageWriting& writing = saving.writing;
    if (!writing.result())
        return writing.result();
    const bool isSame = m_tree.version() == saving.version;
    if (saving.isRebased)
        changeAttributesEverywhere(m_tree, m_stack, [&, from = m_linkBase.parent_path()](auto& attributes) {
            rebase(attributes, from, saving.target.parent_path());
        });
    if (isSame) {
        if (writing.parsed())
            html::PageSource::transfer(*writing.parsed(), *m_tree.document());
        m_codec = std::move(writing.codec());
        packSource(m_tree);
    }
    if (saving.target != m_docURL)
        m_linkBase = saving.target;
    m_docURL = saving.target;
    m_file = writing.file();
    m_size = writing.size();
    m_hasFile = true;
    m_isWellFormed = m_isWellFormed && writing.isWellFormed();
    m_isXhtml = m_isXhtml && m_isWellFormed;
    m_lostElements = writing.lostElements();
    if (isSame)
        m_stack.setClean();
    else
        m_stack.resetClean();
    return {};
}

} // namespace luma
