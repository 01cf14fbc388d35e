// What the page can say before anything else of it is there, or where nothing else comes. The build puts it into the
// page itself. It keeps to what browsers understood before they had modules: it also tells that a browser is too old.

var early = (function () {
    /** @type {Record<string, { interrupted: string, retry: string, tooOld: string }>} */
    var TEXTS = {
        en: {
            interrupted: 'The network ended before Brevant was there.',
            retry: 'Try again',
            tooOld: 'This browser is too old for Brevant.',
        },
        de: {
            interrupted: 'Das Netz brach ab, bevor Brevant geladen war.',
            retry: 'Noch einmal versuchen',
            tooOld: 'Dieser Browser ist zu alt für Brevant.',
        },
        fr: {
            interrupted: 'Le réseau s’est interrompu avant la fin du chargement de Brevant.',
            retry: 'Réessayer',
            tooOld: 'Ce navigateur est trop ancien pour Brevant.',
        },
        es: {
            interrupted: 'La red se cortó antes de que Brevant estuviera cargado.',
            retry: 'Intentar de nuevo',
            tooOld: 'Este navegador es demasiado antiguo para Brevant.',
        },
        pt: {
            interrupted: 'A rede caiu antes de o Brevant estar carregado.',
            retry: 'Tentar de novo',
            tooOld: 'Este navegador é antigo demais para o Brevant.',
        },
        ko: {
            interrupted: 'Brevant를 다 받기 전에 네트워크가 끊겼습니다.',
            retry: '다시 시도',
            tooOld: '이 브라우저는 Brevant에 너무 오래되었습니다.',
        },
        ja: {
            interrupted: 'Brevantを読み込む前にネットワークが切れました。',
            retry: 'もう一度試す',
            tooOld: 'このブラウザーは古すぎます。',
        },
    };

    /** The language that the user likes best of those that there are texts in: the address's, then the browser's. */
    function chooseLanguage() {
        var asked = /[?&]language=([^&]*)/.exec(location.search);
        var liked = (asked ? [asked[1]] : []).concat(navigator.languages || [navigator.language]);
        for (var at = 0; at < liked.length; ++at) {
            var language = liked[at].slice(0, 2).toLowerCase();
            if (language in TEXTS) return language;
        }
        return 'en';
    }

    /** @param {string} id @returns {any} */
    function element(id) {
        return document.getElementById(id);
    }

    /**
     * Says it in the ocarina's place. The page's elements must be there.
     * @param {string} line
     * @param {string} [action] what the button is called that loads the page anew; without it there is none
     */
    function say(line, action) {
        var button = element('message-button');
        element('hint').hidden = true;
        element('mirror').textContent = '';
        element('message-text').textContent = line;
        button.hidden = action === undefined;
        button.textContent = action || '';
        button.onclick = function () {
            location.reload();
        };
        element('message').hidden = false;
        button.focus();
    }

    /** @param {string} line @param {string} [action] */
    function sayOnceThere(line, action) {
        if (document.readyState !== 'loading') {
            say(line, action);
            return;
        }
        document.addEventListener('DOMContentLoaded', function () {
            say(line, action);
        });
    }

    var language = chooseLanguage();
    var texts = TEXTS[language];
    document.documentElement.lang = language;
    /** @param {ErrorEvent} event */
    function onError(event) {
        // A part that does not arrive is an element's error; one that the browser does not understand is the window's.
        if (event.target instanceof HTMLScriptElement) sayOnceThere(texts.interrupted, texts.retry);
        else if (event.error instanceof SyntaxError) sayOnceThere(texts.tooOld);
    }
    addEventListener('error', onError, true);
    // A browser that knows no modules passes over the page's without a word.
    if (!('noModule' in HTMLScriptElement.prototype)) sayOnceThere(texts.tooOld);

    return {
        language: language,
        texts: texts,
        say: say,
        /** The page's modules are there, and tell of faults themselves. */
        end: function () {
            removeEventListener('error', onError, true);
        },
    };
})();
