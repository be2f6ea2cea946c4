#include "query/error_renderer.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "query/render_message.h"

namespace tarnfold::zmf {

ZMFiErrorRenderer::ZMFiErrorRenderer(const QuerySource* source, std::mutex* consoleMutex, int workerNumber,
                                     GameContext gameContext)
    : source_(source),
      mutex_(consoleMutex),
      workerNumber_(workerNumber),
      gameContext_(std::move(gameContext)) {}

std::string ZMFiErrorRenderer::reportText(const ZMFEngine* engineContext, const Message& message) const {
    // A warning at run time has no source lines.
    if (message.level != MessageLevel::Error) return messageText(message) + "\n";

    std::string text = source_ ? renderMessage(*source_, message) : messageText(message);
    text += '\n';
    if (gameContext_) {
        text += gameContext_(engineContext);
        text += '\n';
    }
    return text;
}

void ZMFiErrorRenderer::report(const ZMFEngine* engineContext, const Message& message) {
    // A failing lock throws std::system_error; there is nothing better to do
    // with it here than to let it go.
    std::unique_lock<std::mutex> lock;
    if (mutex_) lock = std::unique_lock<std::mutex>(*mutex_);

    std::cout << reportText(engineContext, message) << std::flush;
    if (message.level != MessageLevel::Error) return;

    // The other workers are not waited for, and exit handlers would touch
    // state they are still using: end at once.
    std::fflush(stdout);
    std::_Exit(1);
}

}  // namespace tarnfold::zmf
