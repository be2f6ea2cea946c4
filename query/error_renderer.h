#pragma once
// How the engine reports while a query runs. A run-time error ends the whole
// process, so the report is the last thing written.

#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include "query/message.h"
#include "query/query_source.h"

namespace tarnfold::zmf {

class ZMFEngine;

class ZMFErrorRenderer {
public:
    virtual ~ZMFErrorRenderer() = default;
    virtual void report(const ZMFEngine* engineContext, const Message& message) = 0;
};

class ZMFiErrorRenderer : public ZMFErrorRenderer {
public:
    // What the worker knows of the game and position it is working on.
    using GameContext = std::function<std::string(const ZMFEngine*)>;

    // The source and the mutex may be null; the mutex makes one report one
    // unit on standard output when workers share the renderer.
    ZMFiErrorRenderer(const QuerySource* source, std::mutex* consoleMutex, int workerNumber,
                      GameContext gameContext = {});

    // Writes the message; an error then ends the process with status 1.
    void report(const ZMFEngine* engineContext, const Message& message) override;

    // Everything report writes for the message, without writing it.
    std::string reportText(const ZMFEngine* engineContext, const Message& message) const;

    int workerNumber() const { return workerNumber_; }
    void setGameContext(GameContext gameContext) { gameContext_ = std::move(gameContext); }

private:
    const QuerySource* source_;
    std::mutex* mutex_;
    int workerNumber_;
    GameContext gameContext_;
};

}  // namespace tarnfold::zmf
