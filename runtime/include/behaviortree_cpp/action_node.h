#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
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
    using ActionNodeBase::ActionNodeBase;

    NodeStatus executeTick() override;
    void halt() final { setStatus(NodeStatus::IDLE); }
};

/// An action made of a function.
class SimpleActionNode : public SyncActionNode
{
public:
    using TickFunctor = std::function<NodeStatus(TreeNode&)>;

    SimpleActionNode(const std::string& name, TickFunctor functor, const NodeParameters& parameters = {})
        : SyncActionNode(name, parameters), functor_(std::move(functor))
    {}

protected:
    NodeStatus tick() override { return functor_(*this); }

    TickFunctor functor_;
};

/// An action whose tick() runs on a thread of its own while the node is RUNNING. Its ports read as they
/// were when the action started; the blackboard is not to be touched from tick(). A halt() of its own
/// makes tick() come to an end soon and then calls stopAndJoin(). What tick() throws comes out of the
/// tick on which the end is seen. Halt the tree before it goes: a derived class is gone by the time that
/// the destructor of this one waits for the thread.
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
        stopAndJoin();
        setStatus(NodeStatus::IDLE);
    }

protected:
    /// Asks tick() to stop and waits for it.
    void stopAndJoin();

private:
    void join();

    std::thread worker_;
    std::atomic<bool> halt_requested_ = false;
    std::atomic<bool> done_ = false;
    NodeStatus result_ = NodeStatus::IDLE;
    std::exception_ptr thrown_;
};

/// An action written as one flow that gives up control with setStatusRunningAndYield() and goes on from
/// there on the next tick. The flow has a stack of its own and never runs beside the tick; a halt leaves
/// it at the yield it stands at, by an exception that tick() must let pass.
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
    struct Cancelled
    {};
    enum class Turn
    {
        Tree,
        Flow
    };

    void runFlow();
    void handOver(Turn to);
    void cancel();

    std::thread flow_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Turn turn_ = Turn::Tree;
    bool ended_ = false;
    bool cancel_ = false;
    NodeStatus result_ = NodeStatus::IDLE;
    std::exception_ptr thrown_;
};

}  // namespace BT
