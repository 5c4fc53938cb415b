#ifndef TOOLS_SERVE_EMBEDDED_FILES_H
#define TOOLS_SERVE_EMBEDDED_FILES_H

#include <string_view>
#include <vector>

// A file of the browser view, compiled into vela: the page, its script and
// style, and the chart library.
struct EmbeddedFile {
    const char* url;   // "/", "/view.js", ...
    const char* type;  // its media type
    std::string_view content;
};

// Every file of the view, generated at build time.
const std::vector<EmbeddedFile>& EmbeddedFiles();

#endif
