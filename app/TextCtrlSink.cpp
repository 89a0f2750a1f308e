#include "app/TextCtrlSink.h"

#include <wx/thread.h>

#include <utility>

namespace vellum {
namespace {

// The console carries UTF-8; bytes that are not valid UTF-8 are shown as Latin-1 rather than
// dropped.
wxString toWxString(std::string_view text) {
    wxString converted = wxString::FromUTF8(text.data(), text.size());
    if (converted.empty() && !text.empty())
        converted = wxString(text.data(), wxConvISO8859_1, text.size());
    return converted;
}

}  // namespace

TextCtrlSink::TextCtrlSink(wxTextCtrl* control, wxEvtHandler* owner)
    : control_(control), owner_(owner) {}

void TextCtrlSink::append(std::string_view text) {
    if (!wxIsMainThread()) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!control_)
            return;
        pending_.append(text);
        scheduleFlush();
        return;
    }
    flush();
    if (control_)
        control_->AppendText(toWxString(text));
}

void TextCtrlSink::clear() {
    if (!wxIsMainThread()) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!control_)
            return;
        pending_.clear();
        clearPending_ = true;
        scheduleFlush();
        return;
    }
    {
        std::lock_guard<std::mutex> lock(mutex_);
        pending_.clear();
        clearPending_ = false;
    }
    if (control_)
        control_->Clear();
}

void TextCtrlSink::detach() {
    std::lock_guard<std::mutex> lock(mutex_);
    control_ = nullptr;
    owner_ = nullptr;
    pending_.clear();
}

void TextCtrlSink::flush() {
    std::string text;
    bool clearFirst = false;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        flushScheduled_ = false;
        if (!control_)
            return;
        text.swap(pending_);
        std::swap(clearFirst, clearPending_);
    }
    if (clearFirst)
        control_->Clear();
    if (!text.empty())
        control_->AppendText(toWxString(text));
}

void TextCtrlSink::scheduleFlush() {
    if (flushScheduled_ || !owner_)
        return;
    flushScheduled_ = true;
    std::weak_ptr<TextCtrlSink> self = weak_from_this();
    owner_->CallAfter([self] {
        if (auto sink = self.lock())
            sink->flush();
    });
}

}  // namespace vellum
