// Constant tables that all users of one kind share: made for the first, kept for as long as
// somebody has them, made anew for the next. Any thread.
#pragma once

#include <map>
#include <memory>
#include <mutex>

namespace TarvaneKit {

template <class Key, class Tables>
class SharedTables {
  public:
    /// Those of that key; the ones that `make()` returns when nobody has any.
    template <class Make>
    std::shared_ptr<const Tables> get(const Key& key, Make make) {
        const std::lock_guard hold(lock_);
        std::weak_ptr<const Tables>& known = tables_[key];
        std::shared_ptr<const Tables> found = known.lock();
        if (!found) {
            found = make();
            known = found;
        }
        return found;
    }

  private:
    std::mutex lock_;
    std::map<Key, std::weak_ptr<const Tables>> tables_;
};

}  // namespace TarvaneKit
