#pragma once

#include "framework/containers/ArgumentException.h"

#include <cstddef>
#include <utility>
#include <vector>

/// The framework's growable array. Every access is checked: a bad index raises CInvalidArgException. The
/// second argument is how elements are passed in a declaration of the framework's kind; nothing depends on
/// it.
template <class T, class Argument = const T&>
class CArray {
  public:
    std::size_t GetSize() const { return m_data.size(); }
    bool IsEmpty() const { return m_data.empty(); }
    void SetSize(std::size_t size) { m_data.resize(size); }
    void RemoveAll() { m_data.clear(); }
    std::size_t Add(T value) {
        m_data.push_back(std::move(value));
        return m_data.size() - 1;
    }
    void InsertAt(std::size_t index, T value) {
        if (index > m_data.size()) throw CInvalidArgException("array index out of range");
        m_data.insert(m_data.begin() + static_cast<std::ptrdiff_t>(index), std::move(value));
    }
    void RemoveAt(std::size_t index, std::size_t count = 1) {
        if (index > m_data.size() || count > m_data.size() - index)
            throw CInvalidArgException("array index out of range");
        const auto first = m_data.begin() + static_cast<std::ptrdiff_t>(index);
        m_data.erase(first, first + static_cast<std::ptrdiff_t>(count));
    }
    T& GetAt(std::size_t index) { return m_data[Checked(index)]; }
    const T& GetAt(std::size_t index) const { return m_data[Checked(index)]; }
    void SetAt(std::size_t index, T value) { m_data[Checked(index)] = std::move(value); }
    T& operator[](std::size_t index) { return GetAt(index); }
    const T& operator[](std::size_t index) const { return GetAt(index); }
    T* GetData() { return m_data.data(); }
    const T* GetData() const { return m_data.data(); }

    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

  private:
    std::size_t Checked(std::size_t index) const {
        if (index >= m_data.size()) throw CInvalidArgException("array index out of range");
        return index;
    }
    std::vector<T> m_data;
};

/// The host's name for the same array.
template <class T>
using TArray = CArray<T>;
