#include "graph/AttributeList.h"

#include <algorithm>

namespace vellum {

bool AttributeList::add(std::unique_ptr<Attribute> attribute) {
    if (!attribute || find(attribute->name()) != nullptr)
        return false;
    items_.push_back(std::move(attribute));
    return true;
}

void AttributeList::replace(std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return;
    for (auto& item : items_) {
        if (item->name() == attribute->name()) {
            item = std::move(attribute);
            return;
        }
    }
    items_.push_back(std::move(attribute));
}

Attribute* AttributeList::find(std::string_view name) const {
    for (const auto& item : items_) {
        if (item->name() == name)
            return item.get();
    }
    return nullptr;
}

bool AttributeList::remove(std::string_view name) {
    const auto at = std::find_if(items_.begin(), items_.end(),
                                 [name](const auto& item) { return item->name() == name; });
    if (at == items_.end())
        return false;
    const auto index = static_cast<std::size_t>(at - items_.begin());
    items_.erase(at);
    if (index < cursor_)
        --cursor_;
    return true;
}

Attribute* AttributeList::first() {
    cursor_ = 0;
    return next();
}

Attribute* AttributeList::next() {
    if (cursor_ >= items_.size())
        return nullptr;
    return items_[cursor_++].get();
}

}  // namespace vellum
