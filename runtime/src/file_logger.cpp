#include <algorithm>
#include <cstdio>
#include <unordered_map>

#include "behaviortree_cpp/loggers/bt_file_logger.h"
#include "behaviortree_cpp/loggers/bt_minitrace_logger.h"

namespace BT {

namespace {

std::string quoted(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        if (static_cast<unsigned char>(c) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            out += escape;
        } else
            out += c;
    }
    return out + '"';
}

}  // namespace

FileLogger::FileLogger(TreeNode* root, const char* filename, std::uint16_t buffer_size)
    : StatusChangeLogger(root), file_(filename), buffer_size_(buffer_size)
{
    if (!file_)
        throw BehaviorTreeException(std::string("cannot write '") + filename + "'");
    writeTree(root);
}

FileLogger::~FileLogger()
{
    // A base class cannot do it: it no longer knows the file.
    FileLogger::flush();
}

void FileLogger::writeTree(const TreeNode* root)
{
    applyRecursiveVisitor(root, [this](const TreeNode* node) { index_.emplace(node, index_.size()); });
    std::unordered_map<const TreeNode*, std::size_t> parents;
    for (const auto& [node, index] : index_) {
        if (const auto* control = dynamic_cast<const ControlNode*>(node))
            for (const TreeNode* child : control->children())
                parents.emplace(child, index);
        else if (const auto* decorator = dynamic_cast<const DecoratorNode*>(node))
            parents.emplace(decorator->child(), index);
    }
    std::vector<const TreeNode*> in_order(index_.size());
    for (const auto& [node, index] : index_)
        in_order[index] = node;
    file_ << "{\"tree\":[";
    for (std::size_t i = 0; i < in_order.size(); ++i) {
        const auto parent = parents.find(in_order[i]);
        file_ << (i == 0 ? "" : ",") << "{\"index\":" << i
              << ",\"parent\":" << (parent == parents.end() ? -1 : static_cast<long>(parent->second))
              << ",\"id\":" << quoted(in_order[i]->registrationName())
              << ",\"name\":" << quoted(in_order[i]->name()) << '}';
    }
    file_ << "]}\n";
}

void FileLogger::callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now)
{
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f", std::chrono::duration<double>(timestamp).count());
    pending_ += std::string("{\"t\":") + seconds + ",\"index\":" + std::to_string(index_.at(&node)) +
                ",\"from\":\"" + toStr(previous) + "\",\"to\":\"" + toStr(now) + "\"}\n";
    if (++pending_lines_ >= buffer_size_)
        flush();
}

void FileLogger::flush()
{
    file_ << pending_ << std::flush;
    pending_.clear();
    pending_lines_ = 0;
}

MinitraceLogger::MinitraceLogger(TreeNode* root, const char* filename_json)
    : StatusChangeLogger(root), file_(filename_json)
{
    if (!file_)
        throw BehaviorTreeException(std::string("cannot write '") + filename_json + "'");
    file_ << "{\"traceEvents\":[";
}

MinitraceLogger::~MinitraceLogger()
{
    file_ << "]}\n";
}

void MinitraceLogger::callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now)
{
    const bool was_running = previous == NodeStatus::RUNNING;
    const char* phase = now == NodeStatus::RUNNING ? "B" : was_running ? "E" : "X";
    if (!was_running && now == NodeStatus::IDLE)
        return;  // told already when it ended
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(timestamp).count();
    file_ << (first_ ? "\n" : ",\n") << "{\"name\":" << quoted(node.name())
          << ",\"cat\":" << quoted(toStr(node.type())) << ",\"ph\":\"" << phase
          << "\",\"ts\":" << microseconds << (*phase == 'X' ? ",\"dur\":0" : "")
          << ",\"pid\":1,\"tid\":1,\"args\":{\"status\":\"" << toStr(now) << "\"}}";
    first_ = false;
}

}  // namespace BT
