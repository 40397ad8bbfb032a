#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

#include "behaviortree_cpp/leaf_node.h"

namespace BT {

/// A leaf that does something. Once it has ended it is not started again within a run of a `Sequence` or
/// `Fallback`.
class ActionNodeBase : public LeafNode
{
public:
    explicit ActionNodeBase(const std::string& name, const NodeParameters& parameters = {})
        : LeafNode(name, parameters)
    {
        setCountsAsAction();
    }

    [[nodiscard]] NodeType type() const final { return NodeType::ACTION; }
};

/// An action that is done within its tick. A tick that returns RUNNING is a std::logic_error.
class SyncActionNode : public ActionNodeBase
{
public:
    explicit SyncActionNode(const std::string& name, const NodeParameters& parameters = {})
        : ActionNodeBase(name, parameters)
    {
        setMustEnd(true);
    }

    void halt() final { setStatus(NodeStatus::IDLE); }
};

/// An action made of a function. Unlike other synchronous ones it may return RUNNING, and is then called
/// again on the next tick.
class SimpleActionNode : public SyncActionNode
{
public:
    using TickFunctor = std::function<NodeStatus(TreeNode&)>;

    SimpleActionNode(const std::string& name, TickFunctor functor, const NodeParameters& parameters = {})
        : SimpleActionNode(name, std::make_shared<const TickFunctor>(std::move(functor)), parameters)
    {}
    /// The function is shared by all nodes of a kind.
    SimpleActionNode(const std::string& name, std::shared_ptr<const TickFunctor> functor,
                     const NodeParameters& parameters = {})
        : SyncActionNode(name, parameters), functor_(std::move(functor))
    {
        setMustEnd(false);
    }

protected:
    NodeStatus tick() override { return (*functor_)(*this); }

    std::shared_ptr<const TickFunctor> functor_;
};

/// An action whose tick() runs on a thread of its own while the node is RUNNING. Its ports read as they
/// were when the action started; the blackboard is not to be touched from tick(). A halt() of its own
/// makes tick() come to an end soon; it may leave it at asking, and what tick() then gives is dropped: who
/// enters the node anew waits for that end and starts afresh. What tick() throws comes out of the tick on
/// which the end is seen. The tree halts it before it goes; a node without a tree is to be halted by its
/// owner, as a derived class is gone by the time that the destructor of this one waits for the thread.
class AsyncActionNode : public ActionNodeBase
{
public:
    using ActionNodeBase::ActionNodeBase;
    ~AsyncActionNode() override;

    NodeStatus executeTick() final;
    /// True once a halt was asked for; long work in tick() looks at it.
    [[nodiscard]] bool isHaltRequested() const { return halt_requested_.load(std::memory_order_acquire); }
    void halt() override
    {
        stopAndJoinThread();
        setStatus(NodeStatus::IDLE);
    }
    /// Asks tick() to stop and waits for it.
    void stopAndJoinThread();
    /// Waits for the end of a run that was halted, and asks again where the first time was in vain.
    void waitForHaltedRun();

private:
    void start();
    void join();

    std::thread worker_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool started_ = false;
    std::atomic<bool> halt_requested_ = false;
    std::atomic<bool> done_ = false;
    NodeStatus result_ = NodeStatus::IDLE;
    std::exception_ptr thrown_;
};

using ActionNode = AsyncActionNode;

/// An action written as one flow that gives up control with setStatusRunningAndYield() and goes on from
/// there on the next tick. The flow has a stack of its own and never runs beside the tick. A halt leaves
/// it at the yield it stands at, by an exception that tick() should let pass: a flow that catches it and
/// yields again is left standing there for good, and what it holds is not released. The same comes of a
/// flow whose node goes without a halt, as its class is gone by then.
class CoroActionNode : public ActionNodeBase
{
public:
    using ActionNodeBase::ActionNodeBase;
    ~CoroActionNode() override;

    NodeStatus executeTick() final;
    void halt() override;

protected:
    void setStatusRunningAndYield();

private:
    class Flow;
    std::shared_ptr<Flow> flow_;
};

}  // namespace BT
