// Reference counting of host objects: made with new (count 1), released with
// SubReference, which deletes the object when the count reaches 0.
#pragma once

namespace vesk {

class Object {
public:
    virtual ~Object() = default;
};

class IRefCounter : public Object {
public:
    IRefCounter() = default;
    IRefCounter(const IRefCounter&) : refs_(1) {}
    IRefCounter& operator=(const IRefCounter&) { return *this; }

    void AddReference() const { ++refs_; }
    void SubReference() const {
        if (--refs_ == 0) delete this;
    }
    int GetRefCount() const { return refs_; }

protected:
    ~IRefCounter() override = default;

private:
    mutable int refs_ = 1;
};

// Owning handle for reference-counted objects: releases on scope exit.
template <class T>
class RefPtr {
public:
    RefPtr() = default;
    explicit RefPtr(T* adopt) : p_(adopt) {}  // takes over one reference
    RefPtr(const RefPtr& o) : p_(o.p_) { if (p_) p_->AddReference(); }
    RefPtr(RefPtr&& o) noexcept : p_(o.p_) { o.p_ = nullptr; }
    RefPtr& operator=(RefPtr o) noexcept { std::swap(p_, o.p_); return *this; }
    ~RefPtr() { if (p_) p_->SubReference(); }
    T* get() const { return p_; }
    T* operator->() const { return p_; }
    T& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }

private:
    T* p_ = nullptr;
};

}  // namespace vesk

#include <utility>
