#include "biff/sst.h"

#include "frame/text.h"

namespace zelvar {

template <class T>
bool eqstr<T>::operator()(const ExtString<T>& a, const ExtString<T>& b) const {
    if (a.text == b.text && a.text == nullptr) return true;
    if (!a.text || !b.text) return false;
    if (std::wcscmp(a.text, b.text) != 0) return false;
    if ((a.flags & (kPhonetic | kRichText)) != (b.flags & (kPhonetic | kRichText))) return false;
    if (a.flags & kPhonetic) return false;
    if (a.flags & kRichText) {
        const auto* ra = a.format ? &a.format->runs : nullptr;
        const auto* rb = b.format ? &b.format->runs : nullptr;
        size_t na = ra ? ra->size() : 0, nb = rb ? rb->size() : 0;
        if (na != nb) return false;
        for (size_t i = 0; i < na; ++i)
            if ((*ra)[i] != (*rb)[i]) return false;
    }
    return true;
}

template <class T>
unsigned StrMap<T>::insert(const ExtString<T>& string, bool force, bool& inserted) {
    if (!force) {
        auto found = _map.find(string);
        if (found != _map.end()) {
            inserted = false;
            return found->second;
        }
    }
    unsigned index = count();
    _map[string] = index;
    _strings.push_back(string);
    inserted = true;
    return index;
}

template <class T>
void StrMap<T>::insert(unsigned index, const ExtString<T>& string) {
    _strings.at(index) = string;
    _map[string] = index;
}

template <class T>
void StrMap<T>::reset() {
    _strings.clear();
    _map.clear();
}

template <class T>
const wchar_t* SST<T>::toPool(const T* text, size_t* length) {
    toWide(text, *_utf8Mode, _scratch);
    *length = _scratch.size();
    return _scratch.c_str();
}

template <class T>
unsigned SST<T>::insert(const T* text, bool force) {
    size_t length = 0;
    ExtString<T> probe;
    probe.text = toPool(text, &length);
    bool inserted = false;
    unsigned index;
    // Look up with the scratch text first so that repeated texts cost no pool memory.
    long existing = force ? -1 : _map.find(probe);
    if (existing >= 0) {
        index = static_cast<unsigned>(existing);
    } else {
        probe.text = _pool->copyW(_scratch.data(), length);
        index = _map.insert(probe, true, inserted);
    }
    ++cstTotal;
    if (inserted) ++cstUnique;
    return index;
}

template <class T>
void SST<T>::insert(unsigned index, const T* text) {
    size_t length = 0;
    toPool(text, &length);
    ExtString<T> string;
    string.text = _pool->copyW(_scratch.data(), length);
    _map.insert(index, string);
}

template <class T>
unsigned SST<T>::insertLoaded(const ExtString<T>& string) {
    bool inserted = false;
    return _map.insert(string, true, inserted);
}

template <class T>
void SST<T>::reset() {
    cstTotal = cstUnique = 0;
    _map.reset();
    _users.clear();
}

template <class T>
void SST<T>::addUser(unsigned index) {
    if (index >= _users.size()) _users.resize(index + 1, 0);
    ++_users[index];
}

template <class T>
void SST<T>::removeUser(unsigned index) {
    if (index < _users.size() && _users[index] > 0) --_users[index];
}

template <class T>
std::wstring SST<T>::dump() const {
    std::wstring out = L"[SST cstTotal=" + std::to_wstring(cstTotal) + L" cstUnique=" +
                       std::to_wstring(cstUnique) + L" (";
    for (unsigned i = 0; i < count(); ++i) {
        if (i) out += L",";
        out += extract(i);
    }
    return out + L")]";
}

template struct eqstr<char>;
template struct eqstr<wchar_t>;
template class StrMap<char>;
template class StrMap<wchar_t>;
template class SST<char>;
template class SST<wchar_t>;

}  // namespace zelvar
