// Edits of one text attribute over ranges of bytes: the engine, in one forward walk over the records.
#include <stdexcept>
#include <utility>

#include "regexp/draft.h"
#include "regexp/match_offset.h"
#include "regexp/replacer.h"
#include "speechtext/record_prefetch.h"

textattrmod_base::textattrmod_base(const Speechtext&, int start_at, std::size_t byte_length, bool forced)
    : start(start_at), length(byte_length), force(forced) {}

namespace {

using Records = Speechtext::const_iterator;

const SpeechtextTextAttrs* content_of(Records it) {
    return it->attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(it->attrs) : nullptr;
}

class Engine {
public:
    Engine(const Speechtext& text, const textattrmod_base::functions_record* functions)
        : functions_(functions),
          result_((regexp::Match(text.as_string()))),
          it_(text.attrs_begin()),
          end_(text.attrs_end()),
          range_(it_) {
        result_.reserve(text.size(), text.attrsvec_size());
    }

    void make(const textattrmod_base& mod) {
        records_up_to(mod.start);
        const bool conflict = conflicts_in_range(mod);
        const bool apply = mod.force || !conflict;
        if (apply && !current_) throw std::logic_error("Cannot tag attribute-less text");
        if (apply) start_range(mod);
        records_of_range(mod, apply);
        if (apply) result_.append_attrs(end_of(mod), *current_);
    }

    // What a copy of the finished text holds, as does a moved one.
    Speechtext finish() {
        for (; it_ != end_; ++it_) result_.append_attrs(it_->position, *it_->attrs);
        return Speechtext(std::move(result_));
    }

private:
    static int end_of(const textattrmod_base& mod) {
        return static_cast<int>(static_cast<std::size_t>(mod.start) + mod.length);
    }

    // Records at the very start of the range are in front of it. The range's records are counted from here; without a
    // record to move on to, from where the last edit counted.
    void records_up_to(int start) {
        for (; it_ != end_ && it_->position <= start; range_ = ++it_) {
            prefetch_records_behind({it_, end_}, 0);
            result_.append_attrs(it_->position, *it_->attrs);
            if (content_of(it_)) current_ = content_of(it_);
        }
    }

    bool conflicts_in_range(const textattrmod_base& mod) {
        bool conflict = current_ && functions_->conflict_check_wrapper(functions_, current_, &mod);
        const std::size_t bound = static_cast<std::size_t>(mod.start) + mod.length;
        for (; it_ != end_ && regexp_detail::position_below(it_->position, bound); ++it_) {
            const SpeechtextTextAttrs* attrs = content_of(it_);
            if (attrs && functions_->conflict_check_wrapper(functions_, attrs, &mod)) conflict = true;
        }
        return conflict;
    }

    SpeechtextTextAttrs updated(const SpeechtextTextAttrs& attrs, const textattrmod_base& mod) const {
        SpeechtextTextAttrs copy(attrs);
        functions_->update_wrapper(functions_, &copy, &mod);
        return copy;
    }

    void start_range(const textattrmod_base& mod) {
        const SpeechtextTextAttrs copy = updated(*current_, mod);
        if (copy != *current_) result_.append_attrs(mod.start, copy);
    }

    void records_of_range(const textattrmod_base& mod, bool apply) {
        for (Records record = range_; record != it_; ++record) {
            const SpeechtextTextAttrs* attrs = content_of(record);
            if (attrs && apply) {
                current_ = attrs;
                result_.append_attrs(record->position, updated(*attrs, mod));
            } else {
                result_.append_attrs(record->position, *record->attrs);
            }
        }
    }

    const textattrmod_base::functions_record* const functions_;
    Speechtext result_;
    Records it_;
    const Records end_;
    Records range_;
    const SpeechtextTextAttrs* current_ = nullptr;  // the last text attribute record that was taken note of
};

}  // namespace

Speechtext textattrmod_base::do_textattrmods_generic(const Speechtext& text,
                                                     const std::list<const textattrmod_base*>& mods,
                                                     const functions_record* functions) {
    if (mods.empty()) return Speechtext(text);
    Engine engine(text, functions);
    for (const textattrmod_base* mod : mods) engine.make(*mod);
    return engine.finish();
}

template <class T>
textattrmod<T>::textattrmod(const Speechtext& text, const regexp::Match& match, const T& new_value, bool forced)
    : textattrmod_base(text, regexp::match_offset(match, text), static_cast<std::size_t>(match.size()), forced),
      value(new_value) {}

template <class T>
Speechtext textattrmod<T>::do_textattrmod(const Speechtext& text, textattrmod mod, check_function check,
                                          update_function update) {
    const functions_record functions = {attribute_conflict_check_wrapper, attribute_update_wrapper, check, update};
    return do_textattrmods_generic(text, {&mod}, &functions);
}

template <class T>
Speechtext textattrmod<T>::do_textattrmods(const Speechtext& text, const std::list<textattrmod>& mods,
                                           check_function check, update_function update) {
    const functions_record functions = {attribute_conflict_check_wrapper, attribute_update_wrapper, check, update};
    std::list<const textattrmod_base*> pointers;
    for (const textattrmod& mod : mods) pointers.push_back(&mod);
    return do_textattrmods_generic(text, pointers, &functions);
}

template <class T>
bool textattrmod<T>::attribute_conflict_check_wrapper(const functions_record* functions,
                                                      const SpeechtextTextAttrs* attrs, const textattrmod_base* mod) {
    return functions->conflict_check(attrs, static_cast<const textattrmod*>(mod)->value);
}

template <class T>
void textattrmod<T>::attribute_update_wrapper(const functions_record* functions, SpeechtextTextAttrs* attrs,
                                              const textattrmod_base* mod) {
    functions->update(attrs, static_cast<const textattrmod*>(mod)->value);
}

template struct textattrmod<std::string>;
