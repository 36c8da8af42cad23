// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/links/literalloops.h"

#include "base/files.h"
#include "links/linkrules.h"

#include <QRegularExpression>
#include <QString>
#include <QStringDecoder>

#include <gumbo.h>

#include <algorithm>
#include <array>

namespace luma::test {

namespace fs = std::filesystem;

namespace {

struct Candidate
{
    fs::path path;
    QString extension;
    QString text;
    std::vector<QString> links; // folded
    std::vector<QString> styles;
};

struct PageTree
{
    std::array<std::vector<std::string>, linkAttributes.size()> links;
    std::vector<std::string> styles;
};

// Without recursion: pages may be nested deeply.
PageTree treeOf(const std::string& source)
{
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    GumboOutput* const output = gumbo_parse_with_options(&options, source.data(), source.size());
    PageTree tree;
    std::vector<const GumboNode*> open = {output->root};
    while (!open.empty()) {
        const GumboNode* const node = open.back();
        open.pop_back();
        if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
            continue;
        for (std::size_t i = 0; i < linkAttributes.size(); ++i) {
            const std::string name(linkAttributes.at(i));
            if (const GumboAttribute* const attribute =
                    gumbo_get_attribute(&node->v.element.attributes, name.c_str()))
                tree.links.at(i).emplace_back(attribute->value);
        }
        const GumboVector& children = node->v.element.children;
        if (node->v.element.tag == GUMBO_TAG_STYLE && children.length > 0)
            tree.styles.emplace_back(static_cast<const GumboNode*>(children.data[0])->v.text.text);
        for (unsigned i = children.length; i-- > 0;)
            open.push_back(static_cast<const GumboNode*>(children.data[i]));
    }
    gumbo_destroy_output(&options, output);
    return tree;
}

QString textOf(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

bool matches(const QString& name, const QString& text)
{
    const QRegularExpression expression(QStringLiteral("url\\( *") + name + QStringLiteral(" *\\)"),
                                        QRegularExpression::CaseInsensitiveOption);
    return expression.isValid() && expression.match(text).hasMatch();
}

bool isLinked(const fs::path& target, const Candidate& candidate)
{
    const QString name = textOf(target.filename());
    if (candidate.extension == QLatin1String("css"))
        return matches(name, candidate.text);
    if (candidate.extension == QLatin1String("txt") || candidate.extension == QLatin1String("js"))
        return candidate.text.contains(name);
    if (candidate.extension.isEmpty())
        return false;
    static const QRegularExpression index(QStringLiteral("/index\\..*html"));
    const QString prefix = textOf(relativePath(target, candidate.path.parent_path())).remove(index);
    const QString folded = prefix.toCaseFolded();
    return std::any_of(candidate.links.begin(), candidate.links.end(),
                       [&](const QString& link) { return link.startsWith(folded); }) ||
           std::any_of(candidate.styles.begin(), candidate.styles.end(),
                       [&](const QString& style) { return matches(prefix, style); });
}

Candidate candidateAt(const fs::path& path)
{
    Candidate candidate;
    candidate.path = path;
    const QString extension = textOf(path.extension()).mid(1);
    static const QStringList known = {QStringLiteral("html"), QStringLiteral("xhtml"), QStringLiteral("xml"),
                                      QStringLiteral("css"),  QStringLiteral("txt"),   QStringLiteral("js")};
    const auto bytes = readFile(path);
    if (!known.contains(extension) || !bytes)
        return candidate;
    QStringDecoder decoder(QStringDecoder::Utf8);
    candidate.text = decoder(QByteArrayView(bytes->data(), static_cast<qsizetype>(bytes->size())));
    if (decoder.hasError())
        return candidate;
    candidate.extension = extension;
    if (known.indexOf(extension) > 2)
        return candidate;
    const PageTree tree = treeOf(*bytes);
    for (const auto& links : tree.links) {
        for (const std::string& link : links)
            candidate.links.push_back(textOf(link).toCaseFolded());
    }
    for (const std::string& style : tree.styles)
        candidate.styles.push_back(textOf(style));
    return candidate;
}

} // namespace

std::vector<std::string> linksByGumbo(const std::string& source)
{
    std::vector<std::string> lines;
    const PageTree tree = treeOf(source);
    for (std::size_t i = 0; i < linkAttributes.size(); ++i) {
        for (const std::string& link : tree.links.at(i))
            lines.push_back(std::string(linkAttributes.at(i)) + " : " + link);
    }
    return lines;
}

std::vector<std::string> unlinkedByLiteralLoops(const fs::path& site)
{
    std::vector<Candidate> candidates;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(site)) {
        if (!entry.is_directory() && entry.path().filename() != folderSettingsName)
            candidates.push_back(candidateAt(entry.path()));
    }
    std::vector<std::string> unlinked;
    for (const Candidate& target : candidates) {
        if (std::none_of(candidates.begin(), candidates.end(),
                         [&](const Candidate& candidate) { return isLinked(target.path, candidate); }))
            unlinked.push_back(target.path.lexically_relative(site).native());
    }
    std::sort(unlinked.begin(), unlinked.end());
    return unlinked;
}

} // namespace luma::test
