#include "behaviortree_cpp/action_node.h"

namespace BT {

NodeStatus SyncActionNode::executeTick()
{
    if (status() > NodeStatus::RUNNING)
        setStatus(NodeStatus::IDLE);
    const NodeStatus result = tick();
    setStatus(result);
    if (result == NodeStatus::RUNNING) [[unlikely]]
        throw std::logic_error("SyncActionNode '" + name() + "' returned RUNNING");
    return ticked(result);
}

AsyncActionNode::~AsyncActionNode()
{
    stopAndJoin();
}

NodeStatus AsyncActionNode::executeTick()
{
    if (status() > NodeStatus::RUNNING)
        setStatus(NodeStatus::IDLE);
    if (!worker_.joinable()) {
        takePortSnapshot();
        halt_requested_ = false;
        done_ = false;
        thrown_ = nullptr;
        setStatus(NodeStatus::RUNNING);
        worker_ = std::thread([this] {
            try {
                result_ = tick();
            } catch (...) {
                thrown_ = std::current_exception();
            }
            done_.store(true, std::memory_order_release);
        });
    }
    if (!done_.load(std::memory_order_acquire))
        return ticked(NodeStatus::RUNNING);
    join();
    if (thrown_ != nullptr)
        std::rethrow_exception(std::exchange(thrown_, nullptr));
    setStatus(result_);
    return ticked(result_);
}

void AsyncActionNode::stopAndJoin()
{
    halt_requested_.store(true, std::memory_order_release);
    join();
}

void AsyncActionNode::join()
{
    if (worker_.joinable())
        worker_.join();
}

CoroActionNode::~CoroActionNode()
{
    cancel();
}

NodeStatus CoroActionNode::executeTick()
{
    if (status() > NodeStatus::RUNNING)
        setStatus(NodeStatus::IDLE);
    if (!flow_.joinable()) {
        ended_ = false;
        cancel_ = false;
        setStatus(NodeStatus::RUNNING);
        turn_ = Turn::Flow;
        flow_ = std::thread([this] { runFlow(); });
    } else
        handOver(Turn::Flow);
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return turn_ == Turn::Tree; });
    }
    if (!ended_)
        return ticked(NodeStatus::RUNNING);
    flow_.join();
    if (thrown_ != nullptr)
        std::rethrow_exception(std::exchange(thrown_, nullptr));
    setStatus(result_);
    return ticked(result_);
}

void CoroActionNode::runFlow()
{
    try {
        result_ = tick();
    } catch (const Cancelled&) {
        result_ = NodeStatus::IDLE;
    } catch (...) {
        thrown_ = std::current_exception();
    }
    ended_ = true;
    handOver(Turn::Tree);
}

void CoroActionNode::handOver(Turn to)
{
    {
        const std::lock_guard lock(mutex_);
        turn_ = to;
    }
    changed_.notify_all();
}

void CoroActionNode::setStatusRunningAndYield()
{
    handOver(Turn::Tree);
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return turn_ == Turn::Flow; });
    if (cancel_)
        throw Cancelled{};
}

void CoroActionNode::cancel()
{
    if (!flow_.joinable())
        return;
    cancel_ = true;
    handOver(Turn::Flow);
    flow_.join();
    thrown_ = nullptr;
}

void CoroActionNode::halt()
{
    cancel();
    setStatus(NodeStatus::IDLE);
}

}  // namespace BT
