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

} // namespace orbel::studio
