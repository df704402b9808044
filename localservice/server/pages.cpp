// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/pages.h"

#include <array>

namespace localservice {

namespace {

struct Page
{
    std::string_view path;
    std::string_view title;
    std::string_view text;
};

constexpr std::array pages = {
    Page{"/", "TEKO service",
         "<p>This is a processing service for TEKO. It is up and running.</p>"},
    Page{"/helpdesk.html", "Help desk",
         "<p>This TEKO works with a service on your own computer or network: there is no help "
         "desk "
         "behind it. When something fails, the message box shows the reason, and the log file "
         "in the "
         "folder <b>Logs</b> of your TEKO folder has the details (switch on <b>Help &rarr; "
         "Logging</b> and restart TEKO).</p>"},
    Page{"/subscription.html", "Subscription",
         "<p>The local service sells nothing. Whoever runs it decides what its accounts may do, "
         "with the option <b>--subscription</b>.</p>"},
    Page{"/teko-server/redirect-training-videos.php", "Training videos",
         "<p>There are no videos for the local service. In short: choose a file, choose an "
         "instrument "
         "and a format, press PROCESS.</p>"},
    Page{"/teko-server/redirect-user-guide.php", "User guide",
         "<ol><li>Choose an audio or video file.</li><li>Choose the instrument to isolate and "
         "the "
         "output format.</li><li>Press PROCESS and wait: the service takes the song apart.</li>"
         "<li>Open the instrument alone, or the mix without it.</li></ol><p>The archive lists "
         "earlier results for as long as the service keeps them.</p>"},
};

constexpr std::string_view pageHead =
    "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>";
constexpr std::string_view pageStyle =
    "</title><style>body{font:16px/1.5 sans-serif;max-width:40em;margin:3em auto;"
    "padding:0 1em;color:#22324d}</style></head><body><h1>";

} // namespace

std::optional<std::string> pageAt(std::string_view path)
{
    for (const Page &page : pages) {
        if (page.path != path)
            continue;
        std::string html(pageHead);
        html.append(page.title).append(pageStyle).append(page.title).append("</h1>");
        return html.append(page.text).append("</body></html>\n");
    }
    return std::nullopt;
}

} // namespace localservice
