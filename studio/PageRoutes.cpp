#include "studio/Routes.h"

namespace orbel::studio {

Answer openPage(const Call& call) {
    if (!call.studio.secrets().useKey(textMember(call.body, "key"))) {
        throw Refusal{403, "this address has been used already", "start orbel studio again"};
    }
    return answerOf({{"token", call.studio.secrets().token()}});
}

Answer makeKey(const Call& call) {
    return answerOf({{"key", call.studio.secrets().makeKey()}});
}

Answer tellTable(const Call& call) {
    Answer answer;
    answer.body = call.studio.table();
    return answer;
}

Answer tellEvents(const Call& call) {
    Answer answer;
    answer.type = "application/x-ndjson";
    answer.stream = [&events = call.studio.events(), isGone = call.request.isGone](BodySink& sink) {
        events.listen(sink, isGone);
    };
    return answer;
}

Answer endPage(const Call& call) {
    call.studio.pageEnded();
    return answerOf(json::object());
}

} // namespace orbel::studio
