#include "app/commandarguments.h"

#include "platform/files.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

void writeAll(int descriptor, std::string_view text, int& error)
{
    while (!text.empty() && error == 0) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
}

template <class List>
bool contains(const List& list, std::string_view name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

} // namespace

CommandArguments::CommandArguments(const std::vector<std::string>& arguments,
                                   std::vector<std::string_view> flags, std::vector<std::string_view> options)
{
    auto next = arguments.begin();
    for (; next != arguments.end() && *next != "--" && m_error.empty(); ++next) {
        const std::size_t equals = std::min(next->find('='), next->size());
        const std::string name = next->substr(0, equals);
        if (next->size() < 2 || !next->starts_with('-'))
            m_operands.push_back(*next);
        else if (contains(flags, *next))
            m_given.push_back({*next, {}});
        else if (!contains(options, name))
            m_error = "unknown option " + *next;
        else if (equals < next->size())
            m_given.push_back({name, next->substr(equals + 1)});
        else if (std::next(next) == arguments.end())
            m_error = name + " needs a value";
        else
            m_given.push_back({name, *++next});
    }
    if (m_error.empty() && next != arguments.end())
        m_operands.insert(m_operands.end(), std::next(next), arguments.end());
}

bool CommandArguments::has(std::string_view name) const
{
    return std::any_of(m_given.begin(), m_given.end(),
                       [name](const Given& given) { return given.name == name; });
}

std::string CommandArguments::value(std::string_view name) const
{
    const auto found = std::find_if(m_given.rbegin(), m_given.rend(),
                                    [name](const Given& given) { return given.name == name; });
    return found == m_given.rend() ? std::string() : found->value;
}

std::vector<std::string> CommandArguments::values(std::string_view name) const
{
    std::vector<std::string> values;
    for (const Given& given : m_given) {
        if (given.name == name)
            values.push_back(given.value);
    }
    return values;
}

void complain(std::string_view text)
{
    int ignored = 0;
    writeAll(STDERR_FILENO, "lumactl: " + std::string(text) + "\n", ignored);
}

ExitCode unusable(std::string_view text)
{
    complain(text);
    return ExitCode::Unusable;
}

ExitCode wrongUsage(const LumactlCommand& command, std::string_view text)
{
    complain(text);
    int ignored = 0;
    writeAll(STDERR_FILENO,
             std::string("Usage: lumactl ").append(command.name).append(" ").append(command.usage) + "\n",
             ignored);
    return ExitCode::Unusable;
}

fs::path absolutePath(const fs::path& path)
{
    std::error_code error;
    fs::path absolute = fs::absolute(path, error).lexically_normal();
    return absolute.has_filename() || absolute == absolute.root_path() ? absolute : absolute.parent_path();
}

std::optional<fs::path> siteFolder(const std::string& argument)
{
    std::error_code error;
    const fs::path site = absolutePath(argument);
    if (!argument.empty() && fs::is_directory(site, error))
        return site;
    complain(argument + ": " + (error ? error.message() : "Not a folder"));
    return std::nullopt;
}

fs::path itemPath(const fs::path& site, const std::string& argument)
{
    const fs::path inside = absolutePath(site / argument);
    return fs::path(argument).is_absolute() || !itemExists(inside) ? absolutePath(argument) : inside;
}

void StandardOutput::flush()
{
    writeAll(STDOUT_FILENO, m_text, m_error);
    m_text.clear();
}

void StandardOutput::flushIfLarge()
{
    constexpr std::size_t large = std::size_t{256} * 1024;
    if (m_text.size() >= large)
        flush();
}

bool StandardOutput::finish()
{
    flush();
    if (m_error == 0)
        return true;
    complain("standard output: " + std::generic_category().message(m_error));
    m_error = 0;
    return false;
}

} // namespace luma
