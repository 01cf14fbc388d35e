// The few lines that the page itself says; all others come from the ocarina.

/**
 * @typedef {{
 *   touch: string, noWebAssembly: string, noAudioWorklet: string, insecure: string, interrupted: string, retry: string,
 *   ended: string, again: string, failed: string, download: string
 * }} Texts
 */

/** @type {Record<string, Texts>} */
const TEXTS = {
    en: {
        touch: 'Touch to play',
        noWebAssembly: 'This browser is too old for Brevant: it has no WebAssembly.',
        noAudioWorklet: 'This browser is too old for Brevant: it has no AudioWorklet.',
        insecure: 'Brevant needs a secure address, one that begins with https.',
        interrupted: 'The network ended before Brevant was there.',
        retry: 'Try again',
        ended: 'Brevant has ended.',
        again: 'Start again',
        failed: 'Brevant could not start.',
        download: 'Download',
    },
    de: {
        touch: 'Zum Spielen berühren',
        noWebAssembly: 'Dieser Browser ist zu alt für Brevant: Er hat kein WebAssembly.',
        noAudioWorklet: 'Dieser Browser ist zu alt für Brevant: Er hat kein AudioWorklet.',
        insecure: 'Brevant braucht eine sichere Adresse, die mit https beginnt.',
        interrupted: 'Das Netz brach ab, bevor Brevant geladen war.',
        retry: 'Noch einmal versuchen',
        ended: 'Brevant ist beendet.',
        again: 'Neu starten',
        failed: 'Brevant konnte nicht starten.',
        download: 'Herunterladen',
    },
    fr: {
        touch: 'Touchez pour jouer',
        noWebAssembly: 'Ce navigateur est trop ancien pour Brevant : il n’a pas WebAssembly.',
        noAudioWorklet: 'Ce navigateur est trop ancien pour Brevant : il n’a pas AudioWorklet.',
        insecure: 'Brevant demande une adresse sûre, qui commence par https.',
        interrupted: 'Le réseau s’est interrompu avant la fin du chargement de Brevant.',
        retry: 'Réessayer',
        ended: 'Brevant est terminé.',
        again: 'Recommencer',
        failed: 'Brevant n’a pas pu démarrer.',
        download: 'Télécharger',
    },
    es: {
        touch: 'Toca para tocar',
        noWebAssembly: 'Este navegador es demasiado antiguo para Brevant: no tiene WebAssembly.',
        noAudioWorklet: 'Este navegador es demasiado antiguo para Brevant: no tiene AudioWorklet.',
        insecure: 'Brevant necesita una dirección segura, que empiece por https.',
        interrupted: 'La red se cortó antes de que Brevant estuviera cargado.',
        retry: 'Intentar de nuevo',
        ended: 'Brevant ha terminado.',
        again: 'Empezar de nuevo',
        failed: 'Brevant no pudo iniciarse.',
        download: 'Descargar',
    },
    pt: {
        touch: 'Toque para tocar',
        noWebAssembly: 'Este navegador é antigo demais para o Brevant: não tem WebAssembly.',
        noAudioWorklet: 'Este navegador é antigo demais para o Brevant: não tem AudioWorklet.',
        insecure: 'O Brevant precisa de um endereço seguro, que comece por https.',
        interrupted: 'A rede caiu antes de o Brevant estar carregado.',
        retry: 'Tentar de novo',
        ended: 'O Brevant terminou.',
        again: 'Começar de novo',
        failed: 'O Brevant não pôde começar.',
        download: 'Baixar',
    },
    ko: {
        touch: '터치하여 연주하세요',
        noWebAssembly: '이 브라우저는 Brevant에 너무 오래되었습니다. WebAssembly가 없습니다.',
        noAudioWorklet: '이 브라우저는 Brevant에 너무 오래되었습니다. AudioWorklet이 없습니다.',
        insecure: 'Brevant에는 https로 시작하는 안전한 주소가 필요합니다.',
        interrupted: 'Brevant를 다 받기 전에 네트워크가 끊겼습니다.',
        retry: '다시 시도',
        ended: 'Brevant가 종료되었습니다.',
        again: '다시 시작',
        failed: 'Brevant를 시작할 수 없습니다.',
        download: '다운로드',
    },
    ja: {
        touch: 'タッチして演奏',
        noWebAssembly: 'このブラウザーは古すぎます。WebAssemblyがありません。',
        noAudioWorklet: 'このブラウザーは古すぎます。AudioWorkletがありません。',
        insecure: 'Brevantにはhttpsで始まる安全なアドレスが必要です。',
        interrupted: 'Brevantを読み込む前にネットワークが切れました。',
        retry: 'もう一度試す',
        ended: 'Brevantは終了しました。',
        again: 'もう一度始める',
        failed: 'Brevantを始められませんでした。',
        download: 'ダウンロード',
    },
};

/**
 * The language that the user likes best of those that there are texts in; English otherwise.
 * @param {readonly string[]} liked language tags, the best first
 */
export function chooseLanguage(liked) {
    return liked.map((tag) => tag.slice(0, 2).toLowerCase()).find((tag) => tag in TEXTS) ?? 'en';
}

/** @param {string} language one that chooseLanguage gave */
export function textsOf(language) {
    return TEXTS[language];
}
