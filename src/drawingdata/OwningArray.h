// An array of pointers that owns its members and deletes them in reverse of building.
#pragma once

#include <cstddef>
#include <vector>

template <class T> class COwningArray {
public:
    COwningArray() = default;
    ~COwningArray() { RemoveAll(); }
    COwningArray(const COwningArray&) = delete;
    COwningArray& operator=(const COwningArray&) = delete;
    COwningArray(COwningArray&& o) noexcept : m_items(std::move(o.m_items)) { o.m_items.clear(); }

    // Takes ownership; null entries are kept as they come.
    T* Add(T* p) {
        m_items.push_back(p);
        return p;
    }
    void RemoveAll() {
        for (size_t i = m_items.size(); i-- > 0;)
            delete m_items[i];
        m_items.clear();
    }
    // Gives the members up to the caller, leaving the array empty.
    std::vector<T*> Release() {
        std::vector<T*> items;
        items.swap(m_items);
        return items;
    }
    size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }
    T* operator[](size_t i) const { return m_items[i]; }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::vector<T*> m_items;
};
