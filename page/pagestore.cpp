// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagestore.h"

#include "base/pathbelow.h"
#include "base/usertext.h"
#include "html/pagelanguage.h"
#include "html/pagesource.h"
#include "html/pagewriter.h"
#include "html/prettyprinter.h"
#include "html/treecomparison.h"
#include "links/linkmapping.h"
#include "page/lostelements.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"
#include "page/sitefolder.h"
#include "page/subtreechange.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QUndoStack>

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

using AttributeChanges = std::vector<std::pair<html::Element*, std::vector<html::Attribute>>>;

bool isLink(const html::Attribute& attribute)
{
    return std::find(linkAttributes.begin(), linkAttributes.end(), attribute.name) != linkAttributes.end();
}

AttributeChanges rebased(const html::Document& document, const fs::path& oldFolder, const fs::path& newFolder)
{
    AttributeChanges changes;
    for (html::Element* element : document.select("*")) {
        std::vector<html::Attribute> attributes = element->attributes();
        for (html::Attribute& attribute : attributes) {
            if (isLink(attribute) && !attribute.value.starts_with('/'))
                attribute.value = rebasedLink(attribute.value, oldFolder, newFolder);
        }
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

void PageStore::setLocation(const fs::path& path, Origin origin)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    m_docURL = (error ? path : absolute).lexically_normal();
    m_linkBase = m_docURL;
    m_hasFile = origin == Origin::File;
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
    const auto bytes = m_file.read();
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
    m_docURL = path.lexically_normal();
    m_file.setPath(m_docURL);
}

Result<void> PageStore::updateLinks(const LinksUpdate& update)
{
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
        return load(QObject::tr("Update Links"));
    if (!update.updated)
        return {};
    if (auto changed = changeLinks(update.updated, oldPlace); !changed)
        return changed;
    if (isWritten && written->oldHash == m_file.knownHash() && m_file.adopt(written->newHash))
        m_stack.resetClean();
    return {};
}

Result<void> PageStore::changeLinks(const LinksUpdate::Updated& updated, const fs::path& oldPlace)
{
    html::Document& document = *m_tree.document();
    const std::string before = markup();
    const auto after = updated(before, oldPlace, m_docURL);
    if (!after)
        return after.error();
    if (*after == before)
        return {};
    const auto page = m_codec.typed(*after, document);
    if (!page)
        return page.error();
    PageCommands(m_tree, m_stack)
        .apply(linkDifference(document, **page), QObject::tr("Update Links"),
               PageCommands::Merging::Separate);
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

Result<void> PageStore::save(const fs::path& path)
{
    if (!m_tree.document())
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "there is no page to save"))};
    AttributeChanges changes;
    const fs::path target = path.lexically_normal();
    // Where the page's file has just moved, the move is still to change its links.
    if (target != m_docURL && target.parent_path() != m_linkBase.parent_path())
        changes = rebased(*m_tree.document(), m_linkBase.parent_path(), target.parent_path());
    swapAll(changes);
    const auto page = m_codec.write(*m_tree.document(), m_language);
    swapAll(changes);
    if (!page)
        return Error{target.string() + ": " + page.error().text};
    PageFile file = target == m_docURL ? m_file : PageFile(target);
    if (const auto written = file.write(page->bytes); !written)
        return written.error();
    PageCommands(m_tree, m_stack).setAttributes(std::move(changes), QObject::tr("Rebase Links"));
    if (page->parsed)
        html::PageSource::transfer(*page->parsed, *m_tree.document());
    packSource(m_tree);
    if (target != m_docURL)
        m_linkBase = target;
    m_docURL = target;
    m_file = std::move(file);
    m_hasFile = true;
    m_isWellFormed = m_isWellFormed && html::isWellFormedXml(page->bytes);
    m_isXhtml = m_isXhtml && m_isWellFormed;
    m_lostElements = lostElements(page->bytes);
    m_stack.setClean();
    return {};
}

} // namespace luma
