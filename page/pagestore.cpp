// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagestore.h"

#include "html/pagelanguage.h"
#include "html/pagesource.h"
#include "html/pagewriter.h"
#include "html/prettyprinter.h"
#include "links/linkmapping.h"
#include "page/lostelements.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"

#include <QObject>
#include <QUndoStack>

#include <algorithm>

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

void swapAll(AttributeChanges& changes)
{
    for (auto& [element, attributes] : changes)
        element->swapAttributes(attributes);
}

} // namespace

void PageStore::setLocation(const fs::path& path, Origin origin)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    m_docURL = (error ? path : absolute).lexically_normal();
    m_hasFile = origin == Origin::File;
    m_file = PageFile(m_docURL);
}

Result<void> PageStore::load(const QString& name)
{
    const auto bytes = m_file.read();
    if (!bytes)
        return bytes.error();
    const html::PageLanguage language = html::pageLanguage(m_docURL, *bytes);
    if (language.kind == html::PageLanguage::Kind::OtherXml)
        return Error{m_docURL.string() + " is not HTML but XML, with the root element <" +
                     language.rootElement + ">."};
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
    m_stack.setClean();
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
    auto page = m_codec.typed(text, *document);
    if (!page)
        return page.error();
    document->trustServerCode((*page)->serverCode());
    PageCommands(m_tree, m_stack).replacePage(*std::move(page), QObject::tr("Edit Source"));
    return {};
}

Result<void> PageStore::tidy()
{
    if (!m_tree.document() || html::patchedPage(*m_tree.document()) == html::prettyPrint(*m_tree.document()))
        return {};
    auto printed = m_codec.printed(*m_tree.document());
    if (!printed)
        return printed.error();
    PageCommands(m_tree, m_stack).replacePage(*std::move(printed), QObject::tr("Tidy Page Source"));
    return {};
}

PageStore::Loss PageStore::lossOfSaving()
{
    Loss loss;
    if (!m_tree.document() || (!m_isWellFormed && m_lostElements.empty()))
        return loss;
    std::string bytes;
    if (tidiesWhenSaving()) {
        bytes = html::prettyPrint(*m_tree.document());
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
        return Error{"there is no page to save"};
    AttributeChanges changes;
    const fs::path target = path.lexically_normal();
    if (target.parent_path() != m_docURL.parent_path())
        changes = rebased(*m_tree.document(), m_docURL.parent_path(), target.parent_path());
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
