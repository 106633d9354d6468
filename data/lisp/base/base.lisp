; The helpers that every other script builds on.
;
; A closure's parameters live in the closure: an inner call of the same closure overwrites those of the outer one.
; So wherever a helper calls a function of the caller, that call is the last argument of a step, evaluated after all
; else has been taken: the function may use the same helper again.
;
; Macros cost memory with each call, which only the end of the interpreter gives back. What runs every frame
; uses if and do instead of when, unless, and, or.
;
; A macro replaces an argument that is a bound symbol by its value, before anything is evaluated. A symbol that holds
; a list must not be passed to a macro by its name alone: the list would be called.

; ---- truth ----------------------------------------------------------------------------------------------------------

; (not :true) is :false.
(define not (closure ((value :boolean)) -> :boolean (if value :false :true)))

; What is left of a chain of and, or: the call of the macro for all but the first, or the value of an empty chain.
(define chain-rest (closure ((name :symbol) (others (:list :any)) (empty :boolean))
  (if (= (list-size others) 0) empty (cons name others))))

; (and a b ...) is :true when all are, and evaluates none behind the first that is :false.
(define and (macro (first others :rest)
  (if ,first , (chain-rest (read "and") others :true) :false)))

; (or a b ...) is :true when one of them is, and evaluates none behind it.
(define or (macro (first others :rest)
  (if ,first :true , (chain-rest (read "or") others :false))))

; (when condition body ...) evaluates the body and gives its last value when the condition is :true, else :nil.
(define when (macro (condition body :rest) (if ,condition (do ,@ body) :nil)))

; (unless condition body ...) does so when the condition is :false.
(define unless (macro (condition body :rest) (if ,condition :nil (do ,@ body))))

; (assert condition message) reports a condition that is :false, and gives the condition.
(define assert (closure ((condition :boolean) (message :string)) -> :boolean
  (if condition :true (do (display (+ "assertion failed: " message)) :false))))

; (nil? value)
(define nil? (closure ((value)) -> :boolean (= (to-string (type-of value)) ":nil")))

; ---- numbers --------------------------------------------------------------------------------------------------------

; Comparisons of two integers, two floats or two bytes. With a float that is no number, all of them are :false.
(define > (closure ((a :a) (b :a)) -> :boolean (< b a)))
(define <= (closure ((a :a) (b :a)) -> :boolean (if (< a b) :true (= a b))))
(define >= (closure ((a :a) (b :a)) -> :boolean (if (< b a) :true (= a b))))

; (/= a b) is the opposite of (= a b).
(define /= (closure ((a :a) (b :a)) -> :boolean (if (= a b) :false :true)))

; The smaller and the larger of two.
(define min (closure ((a :a) (b :a)) -> :a (if (< b a) b a)))
(define max (closure ((a :a) (b :a)) -> :a (if (< a b) b a)))

; (abs -3) is 3. The smallest integer has no opposite and stays what it is.
(define abs (closure ((x :a)) -> :a (if (< x (- x)) (- x) x)))

; (clamp x low high) is x, or the bound that it lies behind.
(define clamp (closure ((x :a) (low :a) (high :a)) -> :a (if (< x low) low (if (< high x) high x))))

; (remainder -7 3) is -1, it has the sign of the first. (modulo -7 3) is 2, it has the sign of the second.
(define remainder (closure ((a :integer) (b :integer)) -> :integer
  (if (= b 0) (/ a b) (- a (* (/ a b) b)))))
(define modulo (closure ((a :integer) (b :integer)) -> :integer
  (if (= b 0) (/ a b) (remainder (+ (remainder a b) b) b))))

; Whether an integer divides by two.
(define even? (closure ((n :integer)) -> :boolean (= (bit-and n 1) 0)))
(define odd? (closure ((n :integer)) -> :boolean (= (bit-and n 1) 1)))

; (interpolate 2.0 4.0 0.5) is 3.0.
(define interpolate (closure ((from :float) (to :float) (part :float)) -> :float (+ from (* (- to from) part))))

; (integer->float 3) is 3.0.
(define integer->float (closure ((n :integer)) -> :float (from-string :float (to-string n))))

; (float->integer -3.7) is -3, without what is behind the point; :nil for what no integer is near to.
(define float->integer (closure ((x :float)) -> :integer
  (if (< (abs x) 9200000000000000000.0) (integer-of-digits (head (string-split "." (to-string x)))) :nil)))
(define integer-of-digits (closure ((digits :string)) -> :integer
  (if (= digits "-0") 0 (from-string :integer digits))))

; ---- lists ----------------------------------------------------------------------------------------------------------

; (empty? (list)) is :true.
(define empty? (closure ((xs (:list :any))) -> :boolean (= (list-size xs) 0)))

; The element at a place, from 0; as head does, it reports an empty list when there is no such place.
(define nth (closure ((index :integer) (xs (:list :any)))
  (if (< 0 index) (nth (- index 1) (if (empty? xs) xs (tail xs))) (head (if (< index 0) (list) xs)))))

(define second (closure ((xs (:list :any))) (nth 1 xs)))
(define third (closure ((xs (:list :any))) (nth 2 xs)))

; (last (list 1 2 3)) is 3.
(define last (closure ((xs (:list :any))) (if (< 1 (list-size xs)) (last (tail xs)) (head xs))))

; The elements of both lists.
(define append (closure ((xs (:list :any)) (ys (:list :any))) -> (:list :any)
  (append-reversed (list-reverse xs) ys)))
(define append-reversed (closure ((xs (:list :any)) (ys (:list :any))) -> (:list :any)
  (if (empty? xs) ys (append-reversed (tail xs) (cons (head xs) ys)))))

; The first elements, as many as there are; and what is left without them.
(define list-take (closure ((count :integer) (xs (:list :any))) -> (:list :any) (list-take-onto count xs (list))))
(define list-take-onto (closure ((count :integer) (xs (:list :any)) (taken (:list :any))) -> (:list :any)
  (if (< 0 (min count (list-size xs)))
      (list-take-onto (- count 1) (tail xs) (cons (head xs) taken))
      (list-reverse taken))))
(define list-drop (closure ((count :integer) (xs (:list :any))) -> (:list :any)
  (if (< 0 (min count (list-size xs))) (list-drop (- count 1) (tail xs)) xs)))

; (range 2 5) is the list of 2, 3 and 4.
(define range (closure ((from :integer) (to :integer)) -> (:list :any) (range-onto from (- to 1) (list))))
(define range-onto (closure ((from :integer) (to :integer) (numbers (:list :any))) -> (:list :any)
  (if (< to from) numbers (range-onto from (- to 1) (cons to numbers)))))

; (fold f start (list a b)) is (f (f start a) b).
(define fold (closure ((f) (start) (xs (:list :any))) (fold-onto f xs start)))
(define fold-onto (closure ((f) (xs (:list :any)) (value))
  (if (empty? xs) value (fold-onto f (tail xs) (f value (head xs))))))

; The elements for which the predicate is :true. The name filter belongs to the language, which does nothing with it.
(define filter-list (closure ((accepts) (xs (:list :any))) -> (:list :any) (filter-onto accepts xs (list))))
(define filter-onto (closure ((accepts) (xs (:list :any)) (accepted (:list :any))) -> (:list :any)
  (if (empty? xs)
      (list-reverse accepted)
      (filter-onto accepts (tail xs) (cons-if (head xs) accepted (accepts (head xs)))))))
(define cons-if (closure ((x) (xs (:list :any)) (is-wanted :boolean)) -> (:list :any)
  (if is-wanted (cons x xs) xs)))

; Whether the predicate is :true of any, or of all elements. No element is asked that cannot change the answer.
(define any? (closure ((accepts) (xs (:list :any))) -> :boolean (any-of? accepts xs :false)))
(define any-of? (closure ((accepts) (xs (:list :any)) (is-found :boolean)) -> :boolean
  (if is-found :true (if (empty? xs) :false (any-of? accepts (tail xs) (accepts (head xs)))))))
(define all? (closure ((accepts) (xs (:list :any))) -> :boolean (all-of? accepts xs :true)))
(define all-of? (closure ((accepts) (xs (:list :any)) (is-right :boolean)) -> :boolean
  (if is-right (if (empty? xs) :true (all-of? accepts (tail xs) (accepts (head xs)))) :false)))

; The place of the first equal element, -1 when there is none.
(define list-index (closure ((x) (xs (:list :any))) -> :integer (list-index-from 0 x xs)))
(define list-index-from (closure ((index :integer) (x) (xs (:list :any))) -> :integer
  (if (empty? xs) -1 (if (same? x (head xs)) index (list-index-from (+ index 1) x (tail xs))))))

; Whether two values are equal; values of different types are not, without a report.
(define same? (closure ((a) (b)) -> :boolean (if (= (type-of a) (type-of b)) (= a b) :false)))

; (contains? 2 (list 1 2 3)) is :true.
(define contains? (closure ((x) (xs (:list :any))) -> :boolean (< -1 (list-index x xs))))

; The list without the elements that are equal to the value.
(define list-remove (closure ((x) (xs (:list :any))) -> (:list :any) (list-remove-onto x xs (list))))
(define list-remove-onto (closure ((x) (xs (:list :any)) (kept (:list :any))) -> (:list :any)
  (if (empty? xs)
      (list-reverse kept)
      (list-remove-onto x (tail xs) (cons-if (head xs) kept (not (same? x (head xs))))))))

; The sum of a list of integers or floats, :nil of an empty one.
(define sum (closure ((xs (:list :any))) (if (empty? xs) :nil (fold + (head xs) (tail xs)))))

; (times 3 f) calls (f 0), (f 1) and (f 2).
(define times (closure ((count :integer) (f)) -> :nil (times-from 0 count f :nil)))
(define times-from (closure ((index :integer) (count :integer) (f) (ignored)) -> :nil
  (if (< index count) (times-from (+ index 1) count f (f index)) :nil)))

; ---- strings --------------------------------------------------------------------------------------------------------

; (string-at 1 "abc") is "b", and an empty string where there is none.
(define string-at (closure ((index :integer) (text :string)) -> :string
  (if (< index 0) "" (string-take 1 (string-drop index text)))))

(define string-starts? (closure ((start :string) (text :string)) -> :boolean
  (= start (string-take (string-size start) text))))
(define string-ends? (closure ((end :string) (text :string)) -> :boolean
  (if (< (string-size text) (string-size end))
      :false
      (= end (string-drop (- (string-size text) (string-size end)) text)))))

; Where a part begins in a text, -1 when it is not in there.
(define string-index (closure ((part :string) (text :string)) -> :integer (string-index-from 0 part text)))
(define string-index-from (closure ((index :integer) (part :string) (text :string)) -> :integer
  (if (string-starts? part text)
      index
      (if (= text "") -1 (string-index-from (+ index 1) part (string-drop 1 text))))))

(define string-contains? (closure ((part :string) (text :string)) -> :boolean (< -1 (string-index part text))))

; (string-repeat 3 "ab") is "ababab".
(define string-repeat (closure ((count :integer) (text :string)) -> :string (string-repeat-onto count text "")))
(define string-repeat-onto (closure ((count :integer) (text :string) (repeated :string)) -> :string
  (if (< 0 count) (string-repeat-onto (- count 1) text (+ repeated text)) repeated)))

; (string-join ", " (list "a" "b")) is "a, b".
(define string-join (closure ((separator :string) (texts (:list :any))) -> :string
  (if (empty? texts) "" (string-join-onto separator (tail texts) (head texts)))))
(define string-join-onto (closure ((separator :string) (texts (:list :any)) (joined :string)) -> :string
  (if (empty? texts) joined (string-join-onto separator (tail texts) (+ joined separator (head texts))))))

; (string-split "," "a,,b") is the list of "a", "" and "b". An empty separator does not split.
(define string-split (closure ((separator :string) (text :string)) -> (:list :any)
  (list-reverse (string-split-onto separator text (list)))))
(define string-split-onto (closure ((separator :string) (text :string) (parts (:list :any))) -> (:list :any)
  (if (< (if (= separator "") -1 (string-index separator text)) 0)
      (cons text parts)
      (string-split-onto separator
                         (string-drop (+ (string-index separator text) (string-size separator)) text)
                         (cons (string-take (string-index separator text) text) parts)))))

; (string-pad 5 "0" "42") is "00042".
(define string-pad (closure ((size :integer) (filling :string) (text :string)) -> :string
  (if (< (string-size text) size) (string-pad size filling (+ filling text)) text)))

; What to-string makes of each value, one after another.
(define text (closure ((values :rest)) -> :string (fold text-onto "" values)))
(define text-onto (closure ((so-far :string) (value)) -> :string (+ so-far (to-string value))))
