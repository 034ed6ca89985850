// document_viewer.h — opening a help document or a web page with the desktop's viewer.
//
// Installed as host.documents by hosts that have a desktop. Without it
// (Console mode) HELP names the document's file instead of opening it.
#pragma once

#include <string_view>

namespace tl {

class DocumentViewer {
public:
    virtual ~DocumentViewer() = default;
    /// Opens the document at `path` (a file) or `url` (a web page). A missing
    /// file is reported to the user by the viewer, naming the file. Returns
    /// false only when the desktop could not open an existing document.
    virtual bool open_document(std::string_view path) = 0;
};

}  // namespace tl
