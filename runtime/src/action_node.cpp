#include "behaviortree_cpp/action_node.h"

#include <chrono>
#include <functional>
#include <utility>

namespace BT {

AsyncActionNode::~AsyncActionNode()
{
    stopAndJoinThread();
}

NodeStatus AsyncActionNode::executeTick()
{
    prepareTick();
    if (isHalted())
        waitForHaltedRun();
    if (!worker_.joinable())
        start();
    if (!done_.load(std::memory_order_acquire))
        return ticked(NodeStatus::RUNNING);
    join();
    if (thrown_ != nullptr)
        std::rethrow_exception(std::exchange(thrown_, nullptr));
    setStatus(result_);
    return ticked(result_);
}

void AsyncActionNode::start()
{
    takePortSnapshot();
    halt_requested_ = false;
    done_ = false;
    started_ = false;
    thrown_ = nullptr;
    setStatus(NodeStatus::RUNNING);
    worker_ = std::thread([this] {
        {
            const std::lock_guard lock(mutex_);
            started_ = true;
        }
        changed_.notify_all();
        try {
            result_ = tick();
        } catch (...) {
            thrown_ = std::current_exception();
        }
        {
            const std::lock_guard lock(mutex_);
            done_.store(true, std::memory_order_release);
        }
        changed_.notify_all();
    });
    // A node that goes at once must not find its tick() gone.
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return started_; });
}

void AsyncActionNode::stopAndJoinThread()
{
    halt_requested_.store(true, std::memory_order_release);
    join();
}

void AsyncActionNode::waitForHaltedRun()
{
    using namespace std::chrono_literals;
    if (!worker_.joinable())
        return;
    halt_requested_.store(true, std::memory_order_release);
    const auto ended = [this] {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, 100ms, [this] { return done_.load(); });
    };
    // A tick() that clears its own mark of a halt as it begins may have missed the first one.
    while (!ended())
        halt();
    join();
}

void AsyncActionNode::join()
{
    if (worker_.joinable())
        worker_.join();
}

/// One run of a coroutine. Its thread holds it too, so that a flow may be left standing.
class CoroActionNode::Flow
{
public:
    explicit Flow(std::function<NodeStatus()> body) : body_(std::move(body)) {}

    /// Lets `flow` run to its next yield or its end; true at the end.
    static bool run(const std::shared_ptr<Flow>& flow)
    {
        if (flow->thread_.joinable())
            flow->handOver(Turn::Flow);
        else {
            flow->turn_ = Turn::Flow;
            flow->thread_ = std::thread([flow] { flow->go(); });
        }
        std::unique_lock lock(flow->mutex_);
        flow->changed_.wait(lock, [&flow] { return flow->turn_ == Turn::Tree; });
        if (flow->ended_)
            flow->thread_.join();
        return flow->ended_;
    }

    /// Called on the flow's own stack.
    void yield()
    {
        if (!cancelled_ || told_) {
            handOver(Turn::Tree);
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return turn_ == Turn::Flow; });
        }
        if (cancelled_) {
            told_ = true;
            throw Cancelled{};
        }
    }

    /// Leaves `flow` at the yield it stands at, or, called by itself, at the next one.
    static void cancel(const std::shared_ptr<Flow>& flow)
    {
        flow->cancelled_ = true;
        if (!flow->isOwnThread() && !run(flow))
            flow->abandon();
    }

    /// Whether it is the flow that asks.
    [[nodiscard]] bool isOwnThread() const { return thread_.get_id() == std::this_thread::get_id(); }

    /// Leaves the flow standing, its stack as it is.
    void abandon()
    {
        if (thread_.joinable())
            thread_.detach();
    }

    /// What came of a flow that has ended.
    NodeStatus result()
    {
        if (thrown_ != nullptr)
            std::rethrow_exception(thrown_);
        return result_;
    }

private:
    struct Cancelled
    {};
    enum class Turn
    {
        Tree,
        Flow
    };

    void go()
    {
        try {
            result_ = body_();
        } catch (const Cancelled&) {
            result_ = NodeStatus::IDLE;
        } catch (...) {
            thrown_ = std::current_exception();
        }
        ended_ = true;
        handOver(Turn::Tree);
    }

    void handOver(Turn to)
    {
        {
            const std::lock_guard lock(mutex_);
            turn_ = to;
        }
        changed_.notify_all();
    }

    std::function<NodeStatus()> body_;
    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Turn turn_ = Turn::Tree;
    bool ended_ = false;
    bool cancelled_ = false;
    bool told_ = false;  ///< that it was cancelled
    NodeStatus result_ = NodeStatus::IDLE;
    std::exception_ptr thrown_;
};

CoroActionNode::~CoroActionNode()
{
    if (flow_ != nullptr)
        flow_->abandon();
}

NodeStatus CoroActionNode::executeTick()
{
    prepareTick();
    if (flow_ == nullptr) {
        setStatus(NodeStatus::RUNNING);
        flow_ = std::make_shared<Flow>([this] { return tick(); });
    }
    if (!Flow::run(flow_))
        return ticked(NodeStatus::RUNNING);
    const NodeStatus result = std::exchange(flow_, nullptr)->result();
    setStatus(result);
    return ticked(result);
}

void CoroActionNode::setStatusRunningAndYield()
{
    // The flow's own hold: the node may have begun another by the time that this one is left standing.
    const std::shared_ptr<Flow> flow = flow_;
    flow->yield();
}

void CoroActionNode::halt()
{
    if (const std::shared_ptr<Flow> flow = flow_) {
        Flow::cancel(flow);
        if (!flow->isOwnThread())
            flow_.reset();
    }
    setStatus(NodeStatus::IDLE);
}

}  // namespace BT
