// A bounded, thread-safe cache of objects compiled from program texts (token definitions,
// grammars). The program's own texts are a handful of constants; the bound only keeps arbitrary
// texts from growing the cache without limit: when it is full, it starts over empty.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace vellum {

template <typename Key, typename Value, std::size_t Limit = 64>
class CompiledTextCache {
  public:
    // The cached object for the key, or what `compile()` returns for it (cached as it is, a null
    // result included). `compile` runs outside the lock, so that it may use other caches.
    template <typename LookUp, typename Compile>
    std::shared_ptr<const Value> get(const LookUp& key, Compile&& compile) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            const auto it = entries_.find(key);
            if (it != entries_.end())
                return it->second;
        }
        std::shared_ptr<const Value> compiled = std::forward<Compile>(compile)();
        std::lock_guard<std::mutex> lock(mutex_);
        if (entries_.size() >= Limit)
            entries_.clear();
        entries_.emplace(Key(key), compiled);
        return compiled;
    }

  private:
    std::mutex mutex_;
    std::map<Key, std::shared_ptr<const Value>, std::less<>> entries_;
};

}  // namespace vellum
