// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

/// Shared by the benchmarks: the page they work on, and how they measure.
namespace luma::bench {

/// A page of four elements for each entry; 5000 entries make 1 MB.
inline std::string samplePage(int entries)
{
    std::string page =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Page</title>\n"
        "</head>\n<body>\n";
    for (int i = 0; i < entries; ++i) {
        page += R"(<section class="entry odd" id="entry)" + std::to_string(i) +
                "\">\n<h2>Entry &amp; heading</h2>\n<p>Some text of the entry, long enough to look like one "
                R"(that was written, with a <a href="../pages/page)" +
                std::to_string(i) + ".html\">link to another</a> in it.</p>\n</section>\n";
    }
    return page + "</body>\n</html>\n";
}

/// The milliseconds since its construction.
class Stopwatch final
{
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// The milliseconds that `work` takes.
template <typename Work>
double measured(const Work& work)
{
    const Stopwatch watch;
    work();
    return watch.milliseconds();
}

/// The median.
inline double middle(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    return times[times.size() / 2];
}

} // namespace luma::bench
