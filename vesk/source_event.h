// Change events: edits are bracketed by BeginEvent/EndEvent, which nest;
// listeners are told once, when the outermost batch ends.
#pragma once
#include <functional>
#include <vector>

namespace vesk {

class CSourceEvent {
public:
    using Listener = std::function<void()>;
    virtual ~CSourceEvent() = default;

    void BeginEvent() { ++depth_; }
    void EndEvent();
    int GetDepth() const { return depth_; }
    // Listeners receive one call per outermost batch.
    void AddListener(Listener l) { listeners_.push_back(std::move(l)); }
    int GetBatchCount() const { return batches_; }

private:
    int depth_ = 0;
    int batches_ = 0;
    std::vector<Listener> listeners_;
};

// Scope guard: EndEvent on every way out.
class CEventScope {
public:
    explicit CEventScope(CSourceEvent* e) : e_(e) { if (e_) e_->BeginEvent(); }
    ~CEventScope() { if (e_) e_->EndEvent(); }
    CEventScope(const CEventScope&) = delete;
    CEventScope& operator=(const CEventScope&) = delete;

private:
    CSourceEvent* e_;
};

}  // namespace vesk
