// TPXshared: the base of scene resources that several owners hold (materials, textures,
// geometries, fonts). It counts its holders in m_NrReferences and destroys itself when the last
// one lets go. Owners hold it through TPXref, which takes and releases a reference for them.
#pragma once

#include <utility>

namespace vellum {

class TPXshared {
  public:
    TPXshared() = default;
    TPXshared(const TPXshared&) = delete;
    TPXshared& operator=(const TPXshared&) = delete;

    int references() const { return m_NrReferences; }
    void acquire() { ++m_NrReferences; }
    // Lets go of one reference; the last one destroys the resource (which must then have been
    // made with new). Releasing more often than acquired is reported as a failed assertion
    // naming "Src/TPXshared" and leaves the resource alone.
    void release();

  protected:
    virtual ~TPXshared() = default;

  private:
    int m_NrReferences = 0;  // holders; never below 0
};

// An owning handle of a shared resource: copying it takes a reference, destroying it releases
// one. Empty when default-constructed or moved from.
template <typename T>
class TPXref {
  public:
    TPXref() = default;
    explicit TPXref(T* resource) : m_resource(resource) {
        if (m_resource)
            m_resource->acquire();
    }
    TPXref(const TPXref& other) : TPXref(other.m_resource) {}
    TPXref(TPXref&& other) noexcept : m_resource(std::exchange(other.m_resource, nullptr)) {}
    TPXref& operator=(TPXref other) noexcept {
        std::swap(m_resource, other.m_resource);
        return *this;
    }
    ~TPXref() {
        if (m_resource)
            m_resource->release();
    }

    // A new resource held by the returned handle.
    template <typename... Args>
    static TPXref make(Args&&... args) {
        return TPXref(new T(std::forward<Args>(args)...));
    }

    T* get() const { return m_resource; }
    T* operator->() const { return m_resource; }
    T& operator*() const { return *m_resource; }
    explicit operator bool() const { return m_resource != nullptr; }

  private:
    T* m_resource = nullptr;
};

}  // namespace vellum
