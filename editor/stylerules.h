// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/cssrules.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// Where a rule of the selected element stands: in a style attribute or a style element of the page, by the element's path,
/// or in a file.
struct StyleSource
{
    enum class Kind { Attribute, Element, File };
    Kind kind = Kind::File;
    std::vector<int> path = {};
    std::filesystem::path file = {};

    bool operator==(const StyleSource&) const = default;
};

/// What becomes of a declaration.
enum class StyleState { Applies, Overridden, Invalid, NotInherited, Off };

struct StyleDeclaration
{
    QString name;
    QString value; ///< with !important, as it is written
    StyleState state = StyleState::Applies;
};

/// A rule that applies to an element, with its declarations in their order.
struct StyleRule
{
    StyleSource source = {};
    QString selector = {}; ///< empty for a style attribute
    QStringList conditions = {};
    int number = -1;        ///< of the engine's rule; -1 for a style attribute
    int line = 0;           ///< from 1; 0 if it isn't known
    std::string sheet = {}; ///< the text that holds the rule; empty if it can't be edited
    CssRule rule = {};      ///< its place there; a style attribute has declarations alone
    std::vector<StyleDeclaration> declarations = {};
    bool isEditable = false;
};

/// The rules of the selected element, of one of its pseudo-elements, or of an element that it inherits from; the most
/// important one first.
struct StyleGroup
{
    QString element = {}; ///< "p.note#first"
    QString part = {};    ///< of a pseudo-element: "::before"
    bool isInherited = false;
    std::vector<StyleRule> rules = {};
    QHash<QString, QString> variables = {}; ///< the values of the custom properties that they set or use
};

} // namespace luma
