// The finalisation taken literally, at any cost, on a list of records. The library's pass is compared with it.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "speechtext/speechtext.h"

struct LiteralRecord {
    int position;
    std::shared_ptr<SpeechtextAttrs> attrs;
};

class LiteralFinalize {
public:
    LiteralFinalize(const std::string& bytes, const std::vector<LiteralRecord>& given) : text(bytes), records(given) {}

    // The text must have a text attribute record, or nothing that needs one.
    std::vector<LiteralRecord> run(bool keep_final_attrs) {
        std::size_t next = 0, scan = 0;
        while (next < records.size() || scan < text.size()) {
            const std::size_t limit =
                next < records.size() ? static_cast<std::size_t>(records[next].position) : text.size();
            for (; scan < limit; ++scan) {
                const int c = static_cast<unsigned char>(text[scan]);
                if (!in_force && c != 9 && c != 12 && c != 13 && c != 32) need_emit = true;
            }
            if (need_emit && current.attrs) write();
            if (next < records.size()) take(records[next++]);
        }
        finish(keep_final_attrs);
        return out;
    }

private:
    static const SpeechtextTextAttrs& content(const LiteralRecord& record) {
        return static_cast<const SpeechtextTextAttrs&>(*record.attrs);
    }

    bool duplicate(const LiteralRecord& entry) const {
        return last_plain.attrs && last_plain.position == entry.position && *entry.attrs == *last_plain.attrs;
    }

    void put(int position, const LiteralRecord& record) {
        out.push_back({position, std::shared_ptr<SpeechtextAttrs>(record.attrs->clone())});
    }

    void write() {
        std::size_t i = 0;
        for (; i < pending.size() && pending[i].position < current.position; ++i) {
            if (!duplicate(pending[i])) put(pending[i].position, pending[i]);
        }
        put(out.empty() ? 0 : current.position, current);
        emitted = out.back();
        need_emit = false;
        in_force = true;
        for (; i < pending.size(); ++i) {
            if (duplicate(pending[i])) continue;
            put(pending[i].position, pending[i]);
            last_plain = pending[i];
        }
        pending.clear();
    }

    void take(const LiteralRecord& record) {
        if (!record.attrs->is_contentattrs()) {
            for (auto at = pending.rbegin(); at != pending.rend() && at->position == record.position; ++at) {
                if (*at->attrs == *record.attrs) return;
            }
            pending.push_back(record);
            if (record.attrs->is_context_dependent() && !in_force) need_emit = true;
            return;
        }
        const SpeechtextTextAttrs& t = content(record);
        if (!current.attrs) {
            current = record;
            if (t.audio.instance() >= 1 || t.transcription.instance() >= 1) need_emit = true;
            return;
        }
        if (t == content(current)) return;
        const unsigned int audio = emitted.attrs ? content(emitted).audio.instance() : 0;
        const unsigned int transcription = emitted.attrs ? content(emitted).transcription.instance() : 0;
        current = record;
        in_force = emitted.attrs && content(emitted) == t;
        if (in_force) return;
        if (t.audio.instance() > 0 && t.audio.instance() != audio) need_emit = true;
        if (t.transcription.instance() > 0 && t.transcription.instance() != transcription) need_emit = true;
    }

    void finish(bool keep_final_attrs) {
        if (current.attrs && !need_emit) {
            if (!emitted.attrs) {
                need_emit = true;
            } else if (keep_final_attrs && !(content(current) == content(emitted))) {
                need_emit = true;
            }
        }
        const int final_position = need_emit && out.empty() ? 0 : current.position;
        for (const LiteralRecord& entry : pending) {
            if (entry.position >= final_position && need_emit) {
                put(final_position, current);
                need_emit = false;
            }
            if (duplicate(entry)) continue;
            put(entry.position, entry);
            last_plain = {entry.position, out.back().attrs};
        }
        if (need_emit) put(final_position, current);
    }

    std::string text;
    std::vector<LiteralRecord> records;
    std::vector<LiteralRecord> out;
    std::vector<LiteralRecord> pending;
    LiteralRecord current{0, nullptr};
    LiteralRecord emitted{0, nullptr};
    LiteralRecord last_plain{0, nullptr};
    bool need_emit = false;
    bool in_force = false;
};
